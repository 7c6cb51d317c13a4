# The main job on the bundled samples: the columns of the sample configuration (in
# French), then the grid of samples/documents through --scan, as a user runs them.
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
             "Titre" "Client" "(numeric)" "Readers:         OpenOffice, HTML, PDF, IPTC, XMP")
  expect("${out}" "${text}")
endforeach()

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
