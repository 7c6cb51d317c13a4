// Desktop services: the associated application, the plain-text editor, the trash.
#include "ui/desktop.h"

#include "core/paths.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace brindar {
namespace {

constexpr int kFileManagerTimeoutMs = 3000;

// The entries of one section of a desktop-entry style file ("key=value" lines).
QList<std::pair<QString, QString>> SectionEntries(const QString& path, QStringView section)
{
    QList<std::pair<QString, QString>> entries;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    bool inSection = false;
    for (const QByteArray& raw : file.readAll().split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(u'[')) {
            inSection = line == u'[' + section.toString() + u']';
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (inSection && equals > 0)
            entries.append({line.left(equals).trimmed(), line.mid(equals + 1).trimmed()});
    }
    return entries;
}

QStringList EnvironmentFolders(const char* variable, const QString& fallback)
{
    const QString value = qEnvironmentVariable(variable);
    return (value.isEmpty() ? fallback : value).split(u':', Qt::SkipEmptyParts);
}

QStringList ApplicationFolders()
{
    QStringList folders;
    const QString home = qEnvironmentVariable("XDG_DATA_HOME", QDir::homePath() + QStringLiteral("/.local/share"));
    for (const QString& data : QStringList{home} + EnvironmentFolders("XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share")))
        folders << data + QStringLiteral("/applications");
    return folders;
}

QString DesktopFile(const QString& id)
{
    for (const QString& folder : ApplicationFolders())
        if (QFileInfo(folder + u'/' + id).isFile())
            return folder + u'/' + id;
    return QString();
}

// The desktop files named for text/plain, in the order the desktop's settings give them.
QStringList PlainTextApplications()
{
    QStringList listFolders{qEnvironmentVariable("XDG_CONFIG_HOME", QDir::homePath() + QStringLiteral("/.config"))};
    listFolders << EnvironmentFolders("XDG_CONFIG_DIRS", QStringLiteral("/etc/xdg")) << ApplicationFolders();
    QStringList desktops;
    for (const QString& desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts))
        desktops << desktop.toLower() + QStringLiteral("-mimeapps.list");
    desktops << QStringLiteral("mimeapps.list");
    QStringList ids;
    const auto add = [&](const QString& path, QStringView section) {
        for (const auto& [key, value] : SectionEntries(path, section))
            if (key == u"text/plain")
                ids << value.split(u';', Qt::SkipEmptyParts);
    };
    for (QStringView section : {u"Default Applications", u"Added Associations"})
        for (const QString& folder : listFolders)
            for (const QString& name : desktops)
                add(folder + u'/' + name, section);
    for (const QString& folder : ApplicationFolders())
        add(folder + QStringLiteral("/mimeinfo.cache"), u"MIME Cache");
    return ids;
}

// "Exec" split into words (double quotes group), its field codes given the file.
QStringList ExecCommand(const QString& exec, const QString& path)
{
    QStringList words;
    QString word;
    bool quoted = false, started = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec[i];
        if (c == u'"') {
            quoted = !quoted;
            started = true;
        } else if (c == u'\\' && quoted && i + 1 < exec.size()) {
            word += exec[++i];
        } else if (c == u' ' && !quoted) {
            if (started || !word.isEmpty())
                words << word;
            word.clear();
            started = false;
        } else {
            word += c;
        }
    }
    if (started || !word.isEmpty())
        words << word;
    QStringList command;
    bool fileGiven = false;
    for (const QString& w : std::as_const(words)) {
        if (w == u"%f" || w == u"%F") {
            command << path;
            fileGiven = true;
        } else if (w == u"%u" || w == u"%U") {
            command << FileUrl(path).toString(QUrl::FullyEncoded);
            fileGiven = true;
        } else if (w.size() == 2 && w.startsWith(u'%') && w != u"%%") {
            continue;  // %i, %c, %k and the deprecated codes
        } else {
            command << QString(w).replace(QStringLiteral("%%"), QStringLiteral("%"));
        }
    }
    if (!fileGiven)
        command << path;
    return command;
}

// A program that needs a terminal, in the desktop's terminal when there is one.
QStringList InTerminal(const QStringList& command)
{
    const QString terminal = QStandardPaths::findExecutable(QStringLiteral("x-terminal-emulator"));
    return terminal.isEmpty() ? command : QStringList{terminal, QStringLiteral("-e")} + command;
}

}  // namespace

std::optional<QStringList> TextEditorCommand(const QString& path)
{
    for (const QString& id : PlainTextApplications()) {
        const QString file = DesktopFile(id);
        if (file.isEmpty())
            continue;
        QString exec;
        bool terminal = false;
        for (const auto& [key, value] : SectionEntries(file, u"Desktop Entry")) {
            if (key == u"Exec")
                exec = value;
            else if (key == u"Terminal")
                terminal = value == u"true";
        }
        if (exec.isEmpty())
            continue;
        const QStringList command = ExecCommand(exec, path);
        return terminal ? InTerminal(command) : command;
    }
    if (const QString visual = qEnvironmentVariable("VISUAL"); !visual.isEmpty())
        return visual.split(u' ', Qt::SkipEmptyParts) << path;
    if (const QString editor = qEnvironmentVariable("EDITOR"); !editor.isEmpty())
        return InTerminal(editor.split(u' ', Qt::SkipEmptyParts) << path);
    return std::nullopt;
}

std::optional<QString> Desktop::openFile(const QString& path)
{
    if (QDesktopServices::openUrl(FileUrl(path)))
        return std::nullopt;
    return QStringLiteral("%1: no application opens this file").arg(path);
}

std::optional<QString> Desktop::openInTextEditor(const QString& path)
{
    const std::optional<QStringList> command = TextEditorCommand(path);
    if (!command)
        return QStringLiteral("No text editor is set: choose a default application for plain text, or set $VISUAL");
    if (!startDetached(*command))
        return QStringLiteral("%1: cannot be started").arg(command->front());
    return std::nullopt;
}

TrashOutcome Desktop::moveToTrash(const QString& path) { return MoveToTrash(path); }

std::optional<QString> Desktop::showProperties(const QStringList& paths)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return QStringLiteral("no desktop session bus: %1").arg(bus.lastError().message());
    QStringList uris;
    for (const QString& path : paths)
        uris << FileUrl(path).toString(QUrl::FullyEncoded);
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItemProperties"));
    call << uris << QString();
    // A file manager may have to start first (bus activation); one that never answers must
    // not freeze the window for long.
    const QDBusMessage reply = bus.call(call, QDBus::Block, kFileManagerTimeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage)
        return QStringLiteral("no file manager shows properties: %1").arg(reply.errorMessage());
    return std::nullopt;
}

bool Desktop::startDetached(const QStringList& command)
{
    return !command.isEmpty() && QProcess::startDetached(command.front(), command.mid(1));
}

}  // namespace brindar
