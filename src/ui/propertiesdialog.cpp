// The program's own properties dialog.
#include "ui/propertiesdialog.h"

#include "core/captionids.h"
#include "platform/fileinfo.h"

#include <QDate>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QTime>
#include <QVBoxLayout>

namespace brindar {
namespace {

QString TimeText(const LocalTime& time)
{
    if (!time.valid())
        return {};
    const QDateTime moment(QDate(time.year, time.month, time.day), QTime(time.hour, time.minute, time.second));
    return QLocale().toString(moment, QLocale::ShortFormat);
}

// "rwxr-x---": owner, group, others.
QString PermissionsText(QFileDevice::Permissions permissions)
{
    const QFileDevice::Permission bits[] = {
        QFileDevice::ReadOwner, QFileDevice::WriteOwner, QFileDevice::ExeOwner,
        QFileDevice::ReadGroup, QFileDevice::WriteGroup, QFileDevice::ExeGroup,
        QFileDevice::ReadOther, QFileDevice::WriteOther, QFileDevice::ExeOther,
    };
    QString text;
    for (int i = 0; i < 9; ++i)
        text += (permissions & bits[i]) ? QChar(QLatin1Char("rwx"[i % 3])) : QChar(u'-');
    return text;
}

}  // namespace

PropertiesDialog::PropertiesDialog(const QString& path, const QList<std::pair<QString, QString>>& metadata,
                                   const Captions& captions, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmProprietes"));
    const QFileInfo info(path);
    setWindowTitle(captions.text(CaptionSection::Main, 92) + u' ' + info.fileName());

    QList<std::pair<QString, QString>> rows{
        {captions.text(caption::FactName), info.fileName()},
        {captions.text(caption::FactFolder), info.path()},
    };
    bool listed = false;
    for (const FolderEntry& entry : ListFolder(info.path(), false, &listed))
        if (entry.name == info.fileName()) {
            rows.append({captions.text(caption::FactSize),
                         QLocale().toString(entry.size) + u' ' + captions.text(caption::Bytes)});
            rows.append({captions.text(caption::FactCreated), TimeText(entry.created)});
            rows.append({captions.text(caption::FactModified), TimeText(entry.written)});
            rows.append({captions.text(caption::FactAccessed), TimeText(entry.accessed)});
            break;
        }
    rows.append({captions.text(caption::FactPermissions), PermissionsText(info.permissions())});
    rows += metadata;

    auto* table = new QTableWidget(int(rows.size()), 2, this);
    table->setObjectName(QStringLiteral("tblFaits"));
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setWordWrap(true);
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    for (int row = 0; row < rows.size(); ++row) {
        table->setItem(row, 0, new QTableWidgetItem(rows[row].first.trimmed()));
        table->setItem(row, 1, new QTableWidgetItem(rows[row].second));
    }
    table->resizeRowsToContents();

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* close = buttons->addButton(captions.text(CaptionSection::Main, 79), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("cmdFermer"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table, 1);
    layout->addWidget(buttons);
    resize(560, 480);
}

}  // namespace brindar
