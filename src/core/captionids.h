// The caption-table entries the engine shows, by name: a number in a call says nothing,
// a name says which text it is.
#pragma once

#include "core/language.h"

namespace brindar {

struct CaptionId {
    CaptionSection section;
    int number;
};

namespace caption {
constexpr CaptionSection kMain = CaptionSection::Main;
constexpr CaptionSection kXml = CaptionSection::Xml;

inline constexpr CaptionId File{kMain, 42};
inline constexpr CaptionId Files{kMain, 43};
inline constexpr CaptionId Document{kMain, 44};
inline constexpr CaptionId Documents{kMain, 45};
inline constexpr CaptionId NoFileNoCsvReport{kMain, 65};
inline constexpr CaptionId ErrorReadingFile{kMain, 70};
inline constexpr CaptionId NoFileNoWordReport{kMain, 71};
inline constexpr CaptionId DirectoryNotFound{kMain, 76};
inline constexpr CaptionId NoFileNoHtmlReport{kMain, 80};
inline constexpr CaptionId ReportsListEmpty{kMain, 81};
inline constexpr CaptionId ReportPageTitle{kMain, 82};
inline constexpr CaptionId TotalDocuments{kMain, 83};
inline constexpr CaptionId DocumentsCounted{kMain, 90};  // "document(s)"
inline constexpr CaptionId ReadingCache{kMain, 94};
inline constexpr CaptionId WritingCache{kMain, 95};
inline constexpr CaptionId Bytes{kMain, 96};
inline constexpr CaptionId CacheWriteError{kMain, 97};
inline constexpr CaptionId CacheNotEnoughMemory{kMain, 98};
inline constexpr CaptionId UnableToSaveSettings{kMain, 99};
inline constexpr CaptionId NoReportsListFolder{kMain, 100};
inline constexpr CaptionId OpenAllSelected{kMain, 101};
inline constexpr CaptionId NoTextEditor{kMain, 102};
inline constexpr CaptionId TrashConfirmation{kMain, 103};
inline constexpr CaptionId TrashFailures{kMain, 104};
inline constexpr CaptionId AndMore{kMain, 105};  // "... and %1 more"
inline constexpr CaptionId EditMenu{kMain, 106};
inline constexpr CaptionId SelectAll{kMain, 107};
inline constexpr CaptionId Copy{kMain, 108};
inline constexpr CaptionId AboutQt{kMain, 109};
inline constexpr CaptionId ParentFolder{kMain, 110};
inline constexpr CaptionId FactName{kMain, 111};
inline constexpr CaptionId FactFolder{kMain, 112};
inline constexpr CaptionId FactSize{kMain, 113};
inline constexpr CaptionId FactCreated{kMain, 114};
inline constexpr CaptionId FactModified{kMain, 115};
inline constexpr CaptionId FactAccessed{kMain, 116};
inline constexpr CaptionId FactPermissions{kMain, 117};
inline constexpr CaptionId UnableToOpenFile{kMain, 118};
inline constexpr CaptionId UnableToWriteReport{kMain, 119};
inline constexpr CaptionId HelpNotInstalled{kMain, 120};
inline constexpr CaptionId BuildingReportsList{kMain, 121};
inline constexpr CaptionId FolderLabel{kMain, 122};
inline constexpr CaptionId QtLocale{kMain, 123};  // the code of Qt's own translations: "en", "fr"
inline constexpr CaptionId FolderCannotBeListed{kMain, 124};
inline constexpr CaptionId CopyValue{kMain, 125};
inline constexpr CaptionId SelectConditionsFile{kMain, 126};
inline constexpr CaptionId CacheLocation{kMain, 127};  // "%1": the cache folder
inline constexpr CaptionId FirstMetadataTab{kMain, 128};  // 128..134, in MetadataTab order
inline constexpr CaptionId ClearAll{kMain, 135};
inline constexpr CaptionId ColumnsCount{kMain, 136};  // "%1 columns"

inline constexpr CaptionId DocumentColumn{CaptionSection::Metadata, 30};

inline constexpr CaptionId TypeAnExtension{CaptionSection::Select, 18};

inline constexpr CaptionId PleaseTypeAPath{CaptionSection::Hypertext, 11};
inline constexpr CaptionId PathAlreadyDefined{CaptionSection::Hypertext, 12};
inline constexpr CaptionId PathNotDefined{CaptionSection::Hypertext, 13};

inline constexpr CaptionId DirectoryAlreadyInList{CaptionSection::List, 18};
inline constexpr CaptionId NoSubdirectoriesIn{CaptionSection::List, 19};
inline constexpr CaptionId AllDirectoriesInList{CaptionSection::List, 20};
inline constexpr CaptionId PathIsInvalid{CaptionSection::List, 21};
inline constexpr CaptionId DirectoryNotInList{CaptionSection::List, 22};

inline constexpr CaptionId NoXsl{kXml, 17};  // "<none>"
inline constexpr CaptionId XmlExportFileUnknown{kXml, 29};
inline constexpr CaptionId ParsingXsl{kXml, 30};
inline constexpr CaptionId ParsingXml{kXml, 31};
inline constexpr CaptionId ApplyingXsl{kXml, 32};
inline constexpr CaptionId ErrorExecutingXsl{kXml, 33};
inline constexpr CaptionId ProcessingComplete{kXml, 34};
inline constexpr CaptionId MissingDirectoryOption{kXml, 35};
inline constexpr CaptionId UnknownDirectory{kXml, 36};
inline constexpr CaptionId MissingXmlOption{kXml, 37};
inline constexpr CaptionId InvalidXmlPath{kXml, 38};
inline constexpr CaptionId UnknownXmlFolder{kXml, 39};
inline constexpr CaptionId InvalidXmlName{kXml, 40};
inline constexpr CaptionId UnknownXsl{kXml, 41};
inline constexpr CaptionId InvalidOutputPath{kXml, 42};
inline constexpr CaptionId UnknownOutputFolder{kXml, 43};
inline constexpr CaptionId InvalidOutputName{kXml, 44};
inline constexpr CaptionId ErrorLoadingTransform{kXml, 45};
inline constexpr CaptionId ErrorLoadingXml{kXml, 46};
inline constexpr CaptionId UnableToWriteXml{kXml, 48};
inline constexpr CaptionId UnableToWriteLog{kXml, 49};
}  // namespace caption

}  // namespace brindar
