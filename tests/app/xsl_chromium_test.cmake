# The batch mode's XML export turned into a page by the shipped Table.xsl, then opened in
# headless Chromium: one table row per file of the tree, as a browser really shows it.
# Run with -DPROGRAM=<brindar> -DSTYLESHEET=<Table.xsl> -DWORK=<scratch folder>; with
# -DCHART=<Chart.xsl> the same export is also drawn as SVG.
foreach(variable PROGRAM STYLESHEET WORK)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "${variable} is not set")
  endif()
endforeach()

include(${CMAKE_CURRENT_LIST_DIR}/chromium.cmake)

set(tree "${WORK}/tree")
file(REMOVE_RECURSE "${tree}" "${WORK}/home" "${WORK}/chromium-profile"
     "${WORK}/export.xml" "${WORK}/export.htm" "${WORK}/export.svg")
file(MAKE_DIRECTORY "${WORK}/home" "${tree}/empty")
# Three folders (one empty, one with a blank in its name) and five files, one of them a
# page whose title the export reads and one whose name needs more than ASCII.
file(WRITE "${tree}/a b.txt" "plain text\n")
file(WRITE "${tree}/café.txt" "accents\n")
file(WRITE "${tree}/report.html" "<html><head><title>Quarterly report</title></head><body>x</body></html>\n")
file(WRITE "${tree}/sub folder/c.csv" "a;b\n1;2\n")
file(WRITE "${tree}/sub folder/d.txt" "d\n")
set(expected_files 5)
set(expected_folders 3)

function(expect text where what)
  string(FIND "${where}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "missing \"${text}\" in the ${what}:\n${where}")
  endif()
endfunction()


function(run_batch stylesheet output)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env "BRINDAR_HOME=${WORK}/home"
            ${PROGRAM} -d "${tree}" -x "${WORK}/export.xml" -t "${stylesheet}" -h "${output}"
    RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 120)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "batch mode with ${stylesheet}: exit ${code}\n${out}${err}")
  endif()
  if(NOT EXISTS "${WORK}/export.xml" OR NOT EXISTS "${output}")
    message(FATAL_ERROR "batch mode with ${stylesheet} wrote no export or no output\n${out}${err}")
  endif()
endfunction()

run_batch("${STYLESHEET}" "${WORK}/export.htm")
file(READ "${WORK}/export.htm" page)
count_matches("<tr class=\"file\"" "${page}" ${expected_files} "file rows in the transformed page")

if(DEFINED CHART)
  run_batch("${CHART}" "${WORK}/export.svg")
  file(READ "${WORK}/export.svg" chart)
  expect("<svg xmlns=\"http://www.w3.org/2000/svg\"" "${chart}" "chart")
  count_matches("<g class=\"dir\"" "${chart}" ${expected_folders} "folder rows in the chart")
endif()

chromium_dom("${WORK}/export.htm")
set(dom "${shown}")
count_matches("<tr class=\"file\"" "${dom}" ${expected_files} "file rows in the page Chromium shows")
count_matches("<section class=\"dir\"" "${dom}" ${expected_folders} "folder sections in the page Chromium shows")
# The export is Windows-1252 and the page UTF-8: the accented name must survive both.
expect("café.txt" "${dom}" "page Chromium shows")
expect("Quarterly report" "${dom}" "page Chromium shows")
expect("/a%20b.txt\"" "${dom}" "page Chromium shows")
expect("no files" "${dom}" "page Chromium shows")
