# The main job on the bundled samples: the columns of the sample configuration, in French.
set(ENV{BRINDAR_HOME} "${SAMPLES}/settings")
execute_process(COMMAND ${PROGRAM} --show-columns RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "exit ${code}\n${out}${err}")
endif()
foreach(text "Language:        French"
             "Column codes:    :meta.AP.TI.AU.SU.KW.CM.PA.CD.MD.P0.LG.PU.VE.PR.CI.CP"
             "Titre" "Client" "(numeric)" "Readers:         OpenOffice, HTML, PDF, IPTC, XMP")
  string(FIND "${out}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "missing \"${text}\" in:\n${out}")
  endif()
endforeach()
