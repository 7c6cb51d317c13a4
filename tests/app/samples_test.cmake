# The main job on the bundled samples: the columns of the sample configuration (in
# French), the batch-mode export of samples/ with its HTML page, then the grid of
# samples/documents through --scan, as a user runs them.
set(home "${WORK}/samples-settings")
file(REMOVE_RECURSE "${home}" "${WORK}/cache")
file(COPY "${SAMPLES}/settings/" DESTINATION "${home}")
set(ENV{BRINDAR_HOME} "${home}")
set(ENV{XDG_CACHE_HOME} "${WORK}/cache")

function(expect output text)
  string(FIND "${output}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "missing \"${text}\" in:\n${output}")
  endif()
endfunction()

execute_process(COMMAND ${PROGRAM} --show-columns RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "--show-columns: exit ${code}\n${out}${err}")
endif()
foreach(text "Language:        French"
             "Column codes:    :meta.AP.TI.AU.SU.KW.CM.PA.CD.MD.P0.LG.PU.VE.PR.CI.CP"
             "Titre" "Client" "(numeric)" "Readers:         OpenOffice, PDF, HTML, IPTC, XMP, Office")
  expect("${out}" "${text}")
endforeach()

file(REMOVE "${WORK}/samples.xml" "${WORK}/samples.htm")
execute_process(COMMAND ${PROGRAM} -d "${SAMPLES}" -x "${WORK}/samples.xml" -t "${STYLESHEET}" -h "${WORK}/samples.htm"
                RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "batch mode: exit ${code}\n${out}${err}")
endif()
file(READ "${WORK}/samples.xml" xml)
expect("${xml}" "<name>harbour.jpg</name>")
expect("${xml}" "<title>Annual report 2026</title>")
expect("${xml}" "</dir>\n</involume>")
file(READ "${WORK}/samples.htm" page)
string(REGEX MATCHALL "<tr class=\"file\"" rows "${page}")
list(LENGTH rows count)
string(REGEX MATCHALL "<file>" files "${xml}")
list(LENGTH files expected)
if(NOT count EQUAL expected OR count LESS 6)
  message(FATAL_ERROR "the HTML page shows ${count} files, the export holds ${expected}")
endif()
file(READ "${home}/Brindar Pro Log.htm" log)
expect("${log}" "end XSL transformation at")

execute_process(COMMAND ${PROGRAM} --scan "${SAMPLES}/documents"
                RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "--scan: exit ${code}\n${out}${err}")
endif()
string(REGEX MATCHALL "\n" lines "${out}")
list(LENGTH lines count)
if(NOT count EQUAL 7)
  message(FATAL_ERROR "--scan: expected the captions and 6 rows, got ${count} lines:\n${out}")
endif()
expect("${out}" "Document\tApplication\tTitre\tAuteur")
expect("${out}" "harbour.jpg\t\tHarbour at dawn\tJeanne Petit\t\tsea; boats\tBoats in the harbour")
expect("${out}" "report.pdf\tWord\tAnnual report 2026")
expect("${err}" "6 fichiers - 5 documents")

execute_process(COMMAND ${PROGRAM} --scan "${WORK}/no such folder"
                RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT code EQUAL 2)
  message(FATAL_ERROR "--scan of a missing folder: exit ${code}, expected 2\n${err}")
endif()
expect("${err}" "no such folder")

# A configuration that sorts the grid (by Title, descending) prints the rows sorted.
file(READ "${home}/Brindar.ini" ini)
string(REPLACE "[Configuration]" "[Configuration]\nSort=2\nUp=0" ini "${ini}")
file(WRITE "${home}/Brindar.ini" "${ini}")
execute_process(COMMAND ${PROGRAM} --scan "${SAMPLES}/documents" RESULT_VARIABLE code OUTPUT_VARIABLE out)
string(REGEX REPLACE "\t[^\n]*" "" names "${out}")
if(NOT names STREQUAL "Document\nbudget.doc\nprices.html\nnotes.sxw\nharbour.jpg\nreport.pdf\nreadme.txt\n")
  message(FATAL_ERROR "rows not sorted by the saved sort:\n${names}")
endif()
