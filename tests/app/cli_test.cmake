# brindar --version, --help and a refused option, run as a user would.
function(run expected_code)
  execute_process(COMMAND ${PROGRAM} ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT code EQUAL expected_code)
    message(FATAL_ERROR "brindar ${ARGN}: exit ${code}, expected ${expected_code}\n${out}${err}")
  endif()
  set(out "${out}${err}" PARENT_SCOPE)
endfunction()

function(expect text)
  string(FIND "${out}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "missing \"${text}\" in:\n${out}")
  endif()
endfunction()

run(0 --version)
if(NOT out MATCHES "^Brindar Pro [0-9]+\\.[0-9]+\\.[0-9]+\n$")
  message(FATAL_ERROR "unexpected version line: ${out}")
endif()
run(0 --help)
foreach(option "-d DIR" "-x FILE" "-o LETTERS" "-t XSL" "-h OUTPUT" "--show-columns" "--version" "BRINDAR_HOME")
  expect("${option}")
endforeach()
run(1 --no-such-option)
expect("unknown option --no-such-option")

# Without a display the window cannot open: a clear message instead of Qt's abort, and
# the command-line modes are named.
foreach(arguments "" "--open;/tmp")
  execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY --unset=QT_QPA_PLATFORM
                          ${PROGRAM} ${arguments}
                  RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT code EQUAL 1 OR NOT err STREQUAL "brindar: no display; see brindar --help for the command-line modes\n")
    message(FATAL_ERROR "brindar ${arguments} without a display: exit ${code}\n${out}${err}")
  endif()
endforeach()
run(1 --open /tmp extra)
expect("unknown option extra")
