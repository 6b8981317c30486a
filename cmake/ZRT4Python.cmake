# Whether the package of Python is built: where its headers, NumPy and pybind11 are, with the system's
# own interpreter, for which Debian's packages are, and not another that stands first in PATH.
if(NOT DEFINED Python_EXECUTABLE)
  set(Python_EXECUTABLE /usr/bin/python3)
endif()
set(ZRT4_PYTHON_DEFAULT OFF)
if(ZRT4_TOOL AND PROJECT_IS_TOP_LEVEL AND EXISTS ${Python_EXECUTABLE}
   AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize|--coverage")  # which the interpreter has not
  find_package(Python 3.11 QUIET COMPONENTS Interpreter Development.Module NumPy)
  find_package(pybind11 2.10 CONFIG QUIET)
  if(Python_FOUND AND pybind11_FOUND)
    set(ZRT4_PYTHON_DEFAULT ON)
  endif()
endif()
option(ZRT4_PYTHON "Build the package zrt4xml of Python" ${ZRT4_PYTHON_DEFAULT})
if(ZRT4_PYTHON AND NOT ZRT4_TOOL)
  message(FATAL_ERROR "ZRT4_PYTHON needs ZRT4_TOOL, whose documents it binds")
endif()
if(ZRT4_PYTHON)
  find_package(Python 3.11 REQUIRED COMPONENTS Interpreter Development.Module NumPy)
  find_package(pybind11 2.10 CONFIG REQUIRED)
endif()
