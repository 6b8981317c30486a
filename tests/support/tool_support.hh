#ifndef TOOL_SUPPORT_HH
#define TOOL_SUPPORT_HH

// Runs the command-line tool as a user runs it, and the documents that its tests share.

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <vector>

#include "support.hh"

namespace test {

struct run_result {
  int code = -1;
  std::string out;
  std::string err;
};

/// The tool, behind what the environment wants to run it under, such as valgrind.
inline std::string tool() {
  const char* under = std::getenv("ZRT4_TOOL_UNDER");
  return (under != nullptr ? std::string(under) + " " : std::string()) + "'" ZRT4_TOOL "' ";
}

/// Runs "zrt4xml ARGUMENTS" in a shell, with ">" and "<" as the caller writes them.
inline run_result run(const std::string& arguments, const std::string& before = "") {
  const test::temporary_file out("");
  const test::temporary_file err("");
  const std::string command = before + "LC_ALL=C.UTF-8 " + tool() + arguments;
  const std::string redirected = "{ " + command + "\n} >" + out.path() + " 2>" + err.path();
  const int status = std::system(redirected.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out.content(), err.content()};
}

/// What "zrt4xml ARGUMENTS" writes to a terminal, where line ends are "\r\n".
inline std::string run_on_terminal(const std::string& arguments, const std::string& before = "") {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    const std::string command =
        "export TERM=xterm LC_ALL=C.UTF-8; " + before + " " + tool() + arguments;
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  std::string shown;
  char buffer[4096];
  for (ssize_t got = 0; (got = read(terminal, buffer, sizeof buffer)) > 0;) {
    shown.append(buffer, static_cast<std::size_t>(got));
  }
  close(terminal);
  waitpid(child, nullptr, 0);
  return shown;
}

/// Every document in examples/.
inline std::vector<std::string> examples() {
  std::vector<std::string> files;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(ZRT4_SOURCE_DIR "/examples")) {
    if (entry.path().extension() == ".xml") files.push_back(entry.path());
  }
  return files;
}

/// Whether what "zrt4xml ARGUMENTS" prints is JSON as docs/zrt4xml.schema.json describes it.
inline testing::AssertionResult prints_valid_json(const std::string& arguments) {
  const run_result result =
      run(arguments + " | " ZRT4_PYTHON " " ZRT4_SOURCE_DIR
                      "/tests/tool/validate_json.py " ZRT4_SOURCE_DIR "/docs/zrt4xml.schema.json");
  if (result.code == 0 && result.out == "valid\n") return testing::AssertionSuccess();
  return testing::AssertionFailure() << arguments << "\n" << result.out << result.err;
}

inline const std::string one_event = "<BMR><EVENT><TYPE>1</TYPE></EVENT></BMR>";

/// Documents with one channel, type NORMAL, in both dialects.
inline std::string channel(const std::string& more = "") {
  return "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>1</EVTYPE><DTYPE>41</DTYPE><PROP>A/B/C</PROP>"
         "<NAME>A.C</NAME>" +
         more + "</CHANNEL></CHANDESCRIPTIONS>";
}
inline const std::string variable =
    "<DAQvariables><DaqBits><evType>1</evType><vindo>A/B/C</vindo><daqName>A.C</daqName>"
    "<bitTitle bit='3'>on</bitTitle></DaqBits></DAQvariables>";

}  // namespace test

#endif
