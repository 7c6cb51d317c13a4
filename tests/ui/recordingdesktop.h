// A desktop for the window's tests: records what would have been opened, answers that no
// file manager shows properties, and moves files to the real trash of the sandbox
// (XDG_DATA_HOME set by the test).
#pragma once

#include "ui/desktop.h"

#include <QStringList>

namespace brindar::test {

class RecordingDesktop final : public Desktop {
public:
    QStringList opened;
    QStringList edited;
    QStringList properties;
    std::optional<QString> openError;
    std::optional<QString> trashError;  // set: nothing can be trashed

    std::optional<QString> openFile(const QString& path) override
    {
        opened << path;
        return openError;
    }
    std::optional<QString> openInTextEditor(const QString& path) override
    {
        edited << path;
        return std::nullopt;
    }
    std::optional<QString> showProperties(const QStringList& paths) override
    {
        properties += paths;
        return QStringLiteral("no file manager in the tests");
    }

    TrashOutcome moveToTrash(const QString& path) override
    {
        if (trashError)
            return {QString(), trashError};
        return Desktop::moveToTrash(path);
    }

protected:
    bool startDetached(const QStringList&) override { return false; }
};

}  // namespace brindar::test
