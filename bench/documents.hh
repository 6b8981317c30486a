#ifndef DOCUMENTS_HH
#define DOCUMENTS_HH

// The documents that the benchmarks read: every kind, in any size, every property another one.

#include <string>
#include <string_view>

namespace bench {

inline std::string property(int n) {
  return "LINAC.DIAG/BPM/BPM" + std::to_string(n) + "/X.POSITION";
}
inline std::string daq_name(int n) {
  return "BPM" + std::to_string(n) + ".X";
}

inline std::string enclose(std::string_view name, std::string_view text) {
  std::string line = "<";
  line.append(name).append(">").append(text).append("</").append(name).append(">\n");
  return line;
}

template <class Part>
std::string document(const char* root, int parts, Part part) {
  std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";
  text.append("<").append(root).append(">\n");
  text.reserve(text.size() + static_cast<std::size_t>(parts + 1) * part(parts).size());
  for (int n = 0; n < parts; ++n) text += part(n);
  text.append("</").append(root).append(">\n");
  return text;
}

/// Channels as the library itself writes them: every element, one a line.
inline std::string element_channels(int channels) {
  return document("CHANDESCRIPTIONS", channels, [](int n) {
    return "<CHANNEL>\n" + enclose("STREAM", "2") + enclose("EVTYPE", "1") +
           enclose("DTYPE", "41") + enclose("DB_KEY", "-1") + enclose("COUNT", "0") +
           enclose("SB_NAME", "LINAC.DAQ/BPM.SERVER") + enclose("PROP", property(n)) +
           enclose("NAME", daq_name(n)) + enclose("SETPOINT", "0") + enclose("SUBSYSTEM", "DIAG") +
           enclose("UNITS", "mm") + enclose("DESC", "horizontal position") + enclose("SIZE", "1") +
           "</CHANNEL>\n";
  });
}

/// As little as a channel can be: its record weighs most here.
inline std::string short_element_channels(int channels) {
  return document("CHANDESCRIPTIONS", channels, [](int n) {
    return "<CHANNEL><EVTYPE>1</EVTYPE><STREAM>2</STREAM><DTYPE>41</DTYPE><PROP>" + property(n) +
           "</PROP><NAME>" + daq_name(n) + "</NAME><UNITS>mm</UNITS></CHANNEL>";
  });
}

inline std::string variable_channels(int channels) {
  return document("DAQvariables", channels, [](int n) {
    return "<DaqFloat>\n" + enclose("evType", "1") + enclose("vindo", property(n)) +
           enclose("daqName", daq_name(n)) + enclose("DBKey", "-1") + enclose("setPoint", "0") +
           enclose("sbName", "LINAC.DAQ/BPM.SERVER") + enclose("subSystem", "DIAG") +
           enclose("description", "horizontal position") + enclose("units", "mm") +
           enclose("freq", "1") + "</DaqFloat>\n";
  });
}

inline std::string dictionary(int entries) {
  return document("ENVINDEXDICT", entries, [](int n) {
    return "<CHANNEL>\n" + enclose("INDEX", std::to_string(n)) + enclose("PROP", property(n)) +
           enclose("DABS", std::to_string(0.05 * (n % 40))) +
           enclose("DREL", std::to_string(0.001 * (n % 7))) + "</CHANNEL>\n";
  });
}

/// Events with one server block of four channels each.
inline std::string event_list(int events) {
  return document("BMR", events, [](int n) {
    std::string block = "<SBLOCK>LINAC.DAQ/BPM.SERVER\n<CHLIST>\n";
    for (int channel = 0; channel < 4; ++channel)
      block += enclose("CHAN", daq_name(4 * n + channel));
    return "<EVENT>\n" + enclose("TYPE", std::to_string(n % 28)) + enclose("TMASK", "0x1f") +
           enclose("MINTIMESEC", "1") + enclose("MINTIMEUSEC", "500000") +
           enclose("PRIORITY", "3") + block + "</CHLIST>\n</SBLOCK>\n</EVENT>\n";
  });
}

inline std::string camera(int features) {
  return document("Camera", features, [](int n) {
    const std::string number = std::to_string(n);
    return "  <Integer Name=\"Feature" + number + "\" Access=\"RW\">\n    " +
           enclose("PvRename", "CAMERA.FEATURE_" + number) + "    " +
           enclose("ToolTip", "Sets feature " + number) + "    " +
           enclose("Description", "Feature " + number + " of the sensor, in its own units.") +
           "    " + enclose("Address", number) + "  </Integer>\n";
  });
}

/// About 100 bytes.
inline std::string smallest_channels() {
  return "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>1</EVTYPE><PROP>A/B/C/D</PROP></CHANNEL>"
         "</CHANDESCRIPTIONS>";
}

}  // namespace bench

#endif
