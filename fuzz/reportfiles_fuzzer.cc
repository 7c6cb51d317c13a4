// Fuzzes the readers of the reports list (.txt) and the path substitutions (.pat): quoted
// fields, booleans and the "|" split, then a rewrite of what was read.
#include "fuzzinput.h"
#include "reports/reportslist.h"
#include "reports/substitutions.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QString path = fuzz::WriteInput(data, size, ".txt");
    const ReportsList list = ReadReportsList(path);
    const Substitutions substitutions = ReadSubstitutions(path);
    for (const ReportEntry& entry : list)
        LinkForPath(substitutions, entry.directory);
    WriteReportsList(path, list);
    ReadReportsList(path);
    WriteSubstitutions(path, substitutions);
    ReadSubstitutions(path);
    return 0;
}
