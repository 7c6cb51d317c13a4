// The words reports take from the moment they are made: date text, time text, base
// name, and the template variables of header and footer texts.
#pragma once

#include "core/configuration.h"
#include "core/language.h"
#include "core/valuetext.h"
#include "platform/systeminfo.h"

#include <QDateTime>
#include <QString>

namespace brindar {

// `PrefixeTableau` alone, or with `AjouterDate` "Brindar 15 November 2026 - 14 h 05".
QString ReportBaseName(const Configuration& configuration, const Captions& captions, const QDateTime& now);

// Replaces, in this order and each capitalised form before its lower-case one,
// %Date/%date, %Time/%time, %User/%user, %Computer/%computer and %Version/%version.
// Any other spelling ("%DATE") stays as typed.
QString ReplaceTemplateVariables(QString text, const Captions& captions, const QDateTime& now,
                                 const SystemInfo& system);

}  // namespace brindar
