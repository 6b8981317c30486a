#ifndef SCANNER_FILES_HH
#define SCANNER_FILES_HH

// Files and network as the scanner sees them while fuzzing: one file, in memory, and nothing else.

#include <xercesc/util/XMLFileMgr.hpp>
#include <xercesc/util/XMLNetAccessor.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstring>
#include <string>

#include "fuzz.hh"

namespace fuzz {

class scanner_files : public xercesc::XMLFileMgr {
 public:
  char* hold(const std::string& text) {
    content = text;
    return name;
  }

  xercesc::FileHandle fileOpen(const XMLCh* path, bool to_write,
                               xercesc::MemoryManager* manager) override {
    char* const local = xercesc::XMLString::transcode(path, manager);
    const bool own = std::strcmp(local, name) == 0;
    manager->deallocate(local);
    if (!own || to_write) broken("a document opens no file");
    position = 0;
    return this;
  }
  xercesc::FileHandle fileOpen(const char* /*path*/, bool /*to_write*/,
                               xercesc::MemoryManager* /*manager*/) override {
    broken("a document opens no file");
  }
  xercesc::FileHandle openStdIn(xercesc::MemoryManager* /*manager*/) override {
    broken("a document does not read standard input");
  }
  void fileClose(xercesc::FileHandle /*file*/, xercesc::MemoryManager* /*manager*/) override {}
  void fileReset(xercesc::FileHandle /*file*/, xercesc::MemoryManager* /*manager*/) override {
    position = 0;
  }
  XMLFilePos curPos(xercesc::FileHandle /*file*/, xercesc::MemoryManager* /*manager*/) override {
    return position;
  }
  XMLFilePos fileSize(xercesc::FileHandle /*file*/, xercesc::MemoryManager* /*manager*/) override {
    return content.size();
  }
  XMLSize_t fileRead(xercesc::FileHandle /*file*/, XMLSize_t count, XMLByte* buffer,
                     xercesc::MemoryManager* /*manager*/) override {
    const std::size_t taken = std::min(std::size_t{count}, content.size() - position);
    std::memcpy(buffer, content.data() + position, taken);
    position += taken;
    return taken;
  }
  void fileWrite(xercesc::FileHandle /*file*/, XMLSize_t /*count*/, const XMLByte* /*buffer*/,
                 xercesc::MemoryManager* /*manager*/) override {
    broken("a document writes no file");
  }
  XMLCh* getFullPath(const XMLCh* const path, xercesc::MemoryManager* manager) override {
    return xercesc::XMLString::replicate(path, manager);
  }
  XMLCh* getCurrentDirectory(xercesc::MemoryManager* manager) override {
    return xercesc::XMLString::transcode("/", manager);
  }
  bool isRelative(const XMLCh* const path, xercesc::MemoryManager* /*manager*/) override {
    return path[0] != u'/';
  }

 private:
  char name[7] = "/input";
  std::string content;
  std::size_t position = 0;
};

class no_network : public xercesc::XMLNetAccessor {
 public:
  const XMLCh* getId() const override { return xercesc::XMLUni::fgZeroLenString; }
  xercesc::BinInputStream* makeNew(const xercesc::XMLURL& /*url*/,
                                   const xercesc::XMLNetHTTPInfo* /*info*/) override {
    broken("a document opens no connection");
  }
};

}  // namespace fuzz

#endif
