# What the browser tests share: counting matches, and the page as headless Chromium
# shows it. Included by the *_chromium_test.cmake scripts.

function(count_matches pattern text expected what)
  string(REGEX MATCHALL "${pattern}" found "${text}")
  list(LENGTH found count)
  if(NOT count EQUAL expected)
    message(FATAL_ERROR "${what}: ${count} found, ${expected} expected\n${text}")
  endif()
endfunction()

# Sets `shown` to the DOM Chromium builds from `page`, scripts run. A profile of its own,
# so nothing is written to the user's; no sandbox, because the tests may run as root; no
# background connections, which a closed network refuses. Ends the script with the skip
# text when Chromium is not installed.
macro(chromium_dom page)
  find_program(chromium NAMES chromium chromium-browser)
  if(NOT chromium)
    message("SKIPPED: chromium is not installed")
    return()
  endif()
  execute_process(
    COMMAND ${chromium} --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking
            --disable-component-update --disable-sync --disable-quic "--user-data-dir=${WORK}/chromium-profile"
            --dump-dom "file://${page}"
    RESULT_VARIABLE chromium_code OUTPUT_VARIABLE shown ERROR_VARIABLE chromium_err TIMEOUT 180)
  if(NOT chromium_code EQUAL 0)
    message(FATAL_ERROR "chromium on ${page}: exit ${chromium_code}\n${chromium_err}")
  endif()
endmacro()
