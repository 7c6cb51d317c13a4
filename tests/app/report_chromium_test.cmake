# The reports made from the command line, opened in headless Chromium: the HTML report
# of a folder and the page of a reports list show one table row per file and one table
# per folder, and the numbered index's links reach their headings.
# Run with -DPROGRAM=<brindar> -DWORK=<scratch folder>.
foreach(variable PROGRAM WORK)
  if(NOT DEFINED ${variable})
    message(FATAL_ERROR "${variable} is not set")
  endif()
endforeach()

include(${CMAKE_CURRENT_LIST_DIR}/chromium.cmake)

file(REMOVE_RECURSE "${WORK}")
set(home "${WORK}/home")
file(MAKE_DIRECTORY "${home}" "${WORK}/lists" "${WORK}/cache")
file(WRITE "${WORK}/one/a & b.txt" "a\n")
file(WRITE "${WORK}/one/page.html" "<html><head><title>Price <list></title></head></html>\n")
file(WRITE "${WORK}/one/c.txt" "c\n")
file(WRITE "${WORK}/two/d.txt" "d\n")
file(WRITE "${WORK}/two/e.txt" "e\n")
file(WRITE "${home}/Brindar.ini"
     "[Proprietes]\r\nTitre=1\r\n[HTMLMeta]\r\nTitle=1\r\n[HTML]\r\nPathListeTableaux=${WORK}/lists\r\n"
     "IndexListes=1\r\nIndexType=0\r\n")
file(WRITE "${home}/Brindar.txt"
     "\"${WORK}/one|First folder\",#TRUE#\r\n\"${WORK}/gone|Gone\",#TRUE#\r\n\"${WORK}/two|Second folder\",#TRUE#\r\n")
set(ENV{BRINDAR_HOME} "${home}")
set(ENV{XDG_CACHE_HOME} "${WORK}/cache")

function(report kind)
  execute_process(COMMAND ${PROGRAM} --report ${kind} ${ARGN}
                  RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 120)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "--report ${kind}: exit ${code}\n${out}${err}")
  endif()
  string(STRIP "${out}" path)
  if(NOT EXISTS "${path}")
    message(FATAL_ERROR "--report ${kind} printed \"${path}\", which does not exist")
  endif()
  set(written "${path}" PARENT_SCOPE)
endfunction()


report(html "${WORK}/one")
set(single "${written}")
report(list)
set(list_page "${written}")
report(csv "${WORK}/two")
if(NOT written STREQUAL "${WORK}/two/Brindar.csv")
  message(FATAL_ERROR "the CSV report is ${written}")
endif()
report(docx "${WORK}/two")
if(NOT written STREQUAL "${WORK}/two/Brindar.docx")
  message(FATAL_ERROR "the word-processor report is ${written}")
endif()

# Nothing to report: the message on standard error, status 2, no file.
file(MAKE_DIRECTORY "${WORK}/empty")
foreach(kind html csv docx)
  execute_process(COMMAND ${PROGRAM} --report ${kind} "${WORK}/empty"
                  RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT code EQUAL 2 OR NOT err MATCHES "No file in this directory" OR NOT out STREQUAL "")
    message(FATAL_ERROR "--report ${kind} of an empty folder: exit ${code}\n${out}${err}")
  endif()
endforeach()
file(GLOB made "${WORK}/empty/*")
if(made)
  message(FATAL_ERROR "reports written for an empty folder: ${made}")
endif()
file(WRITE "${home}/Brindar.txt" "")
execute_process(COMMAND ${PROGRAM} --report list RESULT_VARIABLE code ERROR_VARIABLE err)
if(NOT code EQUAL 2 OR NOT err MATCHES "The current reports list is empty")
  message(FATAL_ERROR "--report list with an empty list: exit ${code}\n${err}")
endif()

chromium_dom("${single}")
count_matches("<table" "${shown}" 1 "tables of the HTML report")
count_matches("<tr>" "${shown}" 4 "rows of the HTML report (header and three files)")
# The title read from the page is escaped in its cell and shown as text.
string(FIND "${shown}" "Price &lt;list&gt;" at)
if(at EQUAL -1)
  message(FATAL_ERROR "the escaped title is not shown:\n${shown}")
endif()

chromium_dom("${list_page}")
count_matches("<table" "${shown}" 2 "tables of the list page")
# Folder one now holds its HTML report too: 1 + 4 rows, then 1 + 2 for folder two.
count_matches("<tr>" "${shown}" 8 "rows of the list page (a header and the files of each folder)")
# Every link of the numbered index has the heading it jumps to.
string(REGEX MATCHALL "<li><a href=\"#[0-9]+\">" links "${shown}")
list(LENGTH links count)
if(NOT count EQUAL 2)
  message(FATAL_ERROR "index links: ${count} found, 2 expected\n${shown}")
endif()
foreach(link ${links})
  string(REGEX REPLACE ".*#([0-9]+).*" "\\1" number "${link}")
  string(FIND "${shown}" "<a name=\"${number}\">" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the index link #${number} has no heading to reach")
  endif()
endforeach()
