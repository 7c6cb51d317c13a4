// The order of the columns in reports.
#include "ui/columnorderdialog.h"

#include "core/columnorder.h"
#include "ui/prompter.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace brindar {
namespace {

QString Html(const Captions& captions, int number) { return captions.text(CaptionSection::Html, number); }

}  // namespace

ColumnOrderDialog::ColumnOrderDialog(const QStringList& headers, const QList<int>& order, const Captions& captions,
                                     Prompter& prompter, QWidget* parent)
    : QDialog(parent), headers_(headers), captions_(captions), prompter_(prompter)
{
    setObjectName(QStringLiteral("frmColonnesHTML"));
    setWindowTitle(Html(captions, 62));
    auto* hint = new QLabel(Html(captions, 65), this);
    hint->setWordWrap(true);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("lstColonnes"));
    position_ = new QLabel(this);
    position_->setObjectName(QStringLiteral("lblPosition"));
    const auto button = [this](const char* name, const QString& text) {
        auto* created = new QPushButton(text, this);
        created->setObjectName(QLatin1String(name));
        return created;
    };
    // The reports-list editor's words for the same moves.
    up_ = button("cmdMonter", captions.text(CaptionSection::List, 9));
    down_ = button("cmdDescendre", captions.text(CaptionSection::List, 10));
    QPushButton* reset = button("cmdSupprimerOrdre", Html(captions, 63));

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(Html(captions, 58), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    QPushButton* cancel = buttons->addButton(Html(captions, 59), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));

    auto* layout = new QGridLayout(this);
    layout->addWidget(hint, 0, 0, 1, 2);
    layout->addWidget(list_, 1, 0, 4, 1);
    layout->addWidget(up_, 1, 1);
    layout->addWidget(down_, 2, 1);
    layout->addWidget(reset, 3, 1);
    layout->addWidget(position_, 5, 0, 1, 2);
    layout->addWidget(buttons, 6, 0, 1, 2);
    layout->setRowStretch(4, 1);
    resize(420, 460);

    connect(list_, &QListWidget::currentRowChanged, this, &ColumnOrderDialog::selectionChanged);
    connect(up_, &QPushButton::clicked, this, [this] { move(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { move(+1); });
    connect(reset, &QPushButton::clicked, this, [this] {
        if (prompter_.question(this, Html(captions_, 64)))
            fill(NaturalColumnOrder(int(headers_.size())));
    });
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    fill(order);
}

void ColumnOrderDialog::fill(const QList<int>& order)
{
    list_->clear();
    for (int column : order) {
        auto* item = new QListWidgetItem(headers_.value(column).trimmed(), list_);
        item->setData(Qt::UserRole, column);
    }
    list_->setCurrentRow(list_->count() > 0 ? 0 : -1);
    selectionChanged();
}

QList<int> ColumnOrderDialog::order() const
{
    QList<int> order;
    for (int row = 0; row < list_->count(); ++row)
        order << list_->item(row)->data(Qt::UserRole).toInt();
    return order;
}

// Up only away from the top, down only away from the bottom; the position as " #p/N".
void ColumnOrderDialog::selectionChanged()
{
    const int row = list_->currentRow();
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row < list_->count() - 1);
    position_->setText(row < 0 ? QString() : QStringLiteral(" #%1/%2").arg(row + 1).arg(list_->count()));
}

void ColumnOrderDialog::move(int step)
{
    QList<int> current = order();
    const int row = list_->currentRow();
    MoveItem(current, row, step);
    fill(current);
    list_->setCurrentRow(std::clamp(row + step, 0, list_->count() - 1));
}

}  // namespace brindar
