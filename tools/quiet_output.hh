#ifndef QUIET_OUTPUT_HH
#define QUIET_OUTPUT_HH

/// While it lives, what the library says on standard output is dropped: remarks that are not part
/// of the result which the tool prints there.
class quiet_output {
 public:
  quiet_output();
  quiet_output(const quiet_output&) = delete;
  quiet_output& operator=(const quiet_output&) = delete;
  ~quiet_output();

 private:
  int original;
};

#endif
