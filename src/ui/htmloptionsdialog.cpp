// The HTML layout options dialog.
#include "ui/htmloptionsdialog.h"

#include "core/configuration.h"
#include "reports/templatevariables.h"
#include "ui/gridtablemodel.h"
#include "ui/prompter.h"
#include "ui/reportslistdialogs.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace brindar {
namespace {

QString Html(const Captions& captions, int number) { return captions.text(CaptionSection::Html, number); }

const QString kImages = QStringLiteral("Images (*.gif *.jpg *.jpeg *.png *.bmp *.svg);;* (*)");

}  // namespace

HtmlOptionsDialog::HtmlOptionsDialog(const HtmlOptions& o, const Captions& captions, Prompter& prompter,
                                     QWidget* parent)
    : QDialog(parent), captions_(captions), prompter_(prompter), colour_(o.couleurTitre)
{
    setObjectName(QStringLiteral("frmOptionsHTML"));
    setWindowTitle(Html(captions, 1));
    const auto check = [this](const char* name, int caption, bool checked) {
        auto* box = new QCheckBox(Html(captions_, caption), this);
        box->setObjectName(QLatin1String(name));
        box->setChecked(checked);
        return box;
    };
    const auto field = [this](const char* name, const QString& text, int length) {
        auto* edit = new QLineEdit(text, this);
        edit->setObjectName(QLatin1String(name));
        edit->setMaxLength(length);
        return edit;
    };
    const auto button = [this](const char* name, const QString& text) {
        auto* created = new QPushButton(text, this);
        created->setObjectName(QLatin1String(name));
        return created;
    };
    const auto link = [this](const char* name, int caption) {
        auto* label = new QLabel(QStringLiteral("<a href=\"#\">%1</a>").arg(Html(captions_, caption)), this);
        label->setObjectName(QLatin1String(name));
        return label;
    };

    prefix_ = field("txtPrefixeTableauHTML", o.prefixeTableau, kHtmlValueLength);
    prefixError_ = new QLabel(Html(captions, 21), this);
    prefixError_->setObjectName(QStringLiteral("lblErrPrefixe"));
    prefixError_->setStyleSheet(QStringLiteral("color: red"));
    prefixError_->hide();
    example_ = new QLabel(this);
    example_->setObjectName(QStringLiteral("lblExemple"));
    addDate_ = check("chkAjouterDate", 3, o.ajouterDate);
    deleteOlder_ = check("chkEffacerAnciens", 4, o.effacerAnciensTableaux);
    imagesFollow_ = check("chkImagesSuivent", 5, o.imagesSuivent);
    listsFolder_ = field("txtPathListeTableaux", o.pathListeTableaux, kHtmlValueLength);
    listsFolder_->setReadOnly(true);
    QPushButton* browseLists = button("cmdParcourirListeTableaux", Html(captions, 60));
    index_ = check("chkIndexListes", 7, o.indexListes);
    dropDown_ = new QRadioButton(Html(captions, 8), this);
    dropDown_->setObjectName(QStringLiteral("optIndexListe"));
    numbered_ = new QRadioButton(Html(captions, 9), this);
    numbered_->setObjectName(QStringLiteral("optIndexNumerote"));
    (o.indexType ? dropDown_ : numbered_)->setChecked(true);
    header_ = field("txtEnTete", o.texteEnTete, kHtmlTextLength);
    headerImage_ = field("txtImageEnTete", o.imageEnTete, kHtmlValueLength);
    QPushButton* browseHeader = button("cmdParcourirEnTete", Html(captions, 60));
    wrap_ = check("chkRenvoi", 12, o.renvoiALaLigne);
    QPushButton* colour = button("cmdCouleur", Html(captions, 13));
    swatch_ = new QLabel(this);
    swatch_->setFixedSize(40, 20);
    background_ = field("txtImageFond", o.imageFond, kHtmlValueLength);
    QPushButton* browseBackground = button("cmdParcourirFond", Html(captions, 60));
    titleImage_ = field("txtImageDebutTableau", o.imageDebutTableau, kHtmlValueLength);
    QPushButton* browseTitle = button("cmdParcourirDebutTableau", Html(captions, 60));
    total_ = check("chkTotalDocuments", 16, o.totalDocuments);
    directory_ = check("chkDisplayDirectory", 17, o.displayDirectory);
    footer_ = field("txtPied", o.textePied, kHtmlTextLength);
    footerImage_ = field("txtImagePied", o.imagePied, kHtmlValueLength);
    QPushButton* browseFooter = button("cmdParcourirPied", Html(captions, 60));
    QLabel* sampleHeader = link("lblExempleEnTete", 22);
    QLabel* sampleFooter = link("lblExemplePied", 23);
    QPushButton* help = button("cmdAide", Html(captions, 61));

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(Html(captions, 58), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    QPushButton* cancel = buttons->addButton(Html(captions, 59), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));
    buttons->addButton(help, QDialogButtonBox::HelpRole);

    auto* layout = new QGridLayout(this);
    int row = 0;
    const auto line = [&](int caption, QWidget* widget, QWidget* side = nullptr) {
        layout->addWidget(new QLabel(Html(captions_, caption), this), row, 0);
        layout->addWidget(widget, row, 1);
        if (side)
            layout->addWidget(side, row, 2);
        ++row;
    };
    const auto wide = [&](QWidget* widget) { layout->addWidget(widget, row++, 0, 1, 3); };
    line(2, prefix_);
    wide(prefixError_);
    wide(addDate_);
    wide(example_);
    wide(deleteOlder_);
    wide(imagesFollow_);
    line(6, listsFolder_, browseLists);
    wide(index_);
    layout->addWidget(dropDown_, row, 1);
    layout->addWidget(numbered_, row++, 2);
    line(10, header_, sampleHeader);
    line(11, headerImage_, browseHeader);
    wide(wrap_);
    layout->addWidget(colour, row, 0);
    layout->addWidget(swatch_, row++, 1);
    line(14, background_, browseBackground);
    line(15, titleImage_, browseTitle);
    wide(total_);
    wide(directory_);
    line(18, footer_, sampleFooter);
    line(19, footerImage_, browseFooter);
    layout->addWidget(buttons, row, 0, 1, 3);
    layout->setColumnStretch(1, 1);
    resize(640, sizeHint().height());

    connect(prefix_, &QLineEdit::textChanged, this, &HtmlOptionsDialog::prefixChanged);
    connect(addDate_, &QCheckBox::toggled, this, &HtmlOptionsDialog::prefixChanged);
    connect(index_, &QCheckBox::toggled, dropDown_, &QWidget::setEnabled);
    connect(index_, &QCheckBox::toggled, numbered_, &QWidget::setEnabled);
    dropDown_->setEnabled(o.indexListes);
    numbered_->setEnabled(o.indexListes);
    connect(browseLists, &QPushButton::clicked, this, [this] {
        ReportsListFolderDialog dialog(listsFolder_->text(), captions_, prompter_, this);
        if (prompter_.exec(dialog) == QDialog::Accepted)
            listsFolder_->setText(dialog.folder());
    });
    for (auto [browse, target, caption] : {std::tuple{browseHeader, headerImage_, 11},
                                           std::tuple{browseBackground, background_, 14},
                                           std::tuple{browseTitle, titleImage_, 15},
                                           std::tuple{browseFooter, footerImage_, 19}})
        connect(browse, &QPushButton::clicked, this, [this, target = target, caption = caption] {
            if (const auto file = prompter_.openFileName(this, Html(captions_, caption), target->text(), kImages))
                target->setText(*file);
        });
    connect(colour, &QPushButton::clicked, this, [this] {
        if (const auto chosen = prompter_.colour(this, ColourOfWord(colour_, Qt::yellow))) {
            colour_ = WordOfColour(*chosen);
            showColour();
        }
    });
    for (auto [sample, target, question, text] :
         {std::tuple{sampleHeader, header_, 24, SampleHeaderText(captions)},
          std::tuple{sampleFooter, footer_, 25, SampleFooterText(captions)}})
        connect(sample, &QLabel::linkActivated, this, [this, target = target, question = question, text = text] {
            if (prompter_.question(this, Html(captions_, question)))
                target->setText(text);
        });
    connect(help, &QPushButton::clicked, this, [this] {
        prompter_.message(this, Prompter::Icon::Information, HtmlSummaryText(captions_), Html(captions_, 33));
    });
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    prefixChanged();
    showColour();
}

// Forbidden characters go the moment they are typed, with the warning; the preview shows
// the file name a report would get now.
void HtmlOptionsDialog::prefixChanged()
{
    const QString cleaned = CleanPrefix(prefix_->text());
    if (cleaned != prefix_->text()) {
        prefixError_->show();
        prefix_->setText(cleaned);
        return;
    }
    Configuration preview;
    preview.prefixeTableau = cleaned;
    preview.ajouterDate = addDate_->isChecked();
    example_->setText(Html(captions_, 20) + u' ' +
                      ReportBaseName(preview, captions_, QDateTime::currentDateTime()) + QStringLiteral(".html"));
}

void HtmlOptionsDialog::showColour()
{
    swatch_->setStyleSheet(QStringLiteral("background: %1; border: 1px solid gray").arg(ColourOfWord(colour_, Qt::yellow).name()));
}

HtmlOptions HtmlOptionsDialog::options() const
{
    HtmlOptions o;
    o.prefixeTableau = prefix_->text();
    o.ajouterDate = addDate_->isChecked();
    o.effacerAnciensTableaux = deleteOlder_->isChecked();
    o.imagesSuivent = imagesFollow_->isChecked();
    o.pathListeTableaux = listsFolder_->text();
    o.indexListes = index_->isChecked();
    o.indexType = dropDown_->isChecked();
    o.texteEnTete = header_->text();
    o.imageEnTete = headerImage_->text();
    o.renvoiALaLigne = wrap_->isChecked();
    o.couleurTitre = colour_;
    o.imageFond = background_->text();
    o.imageDebutTableau = titleImage_->text();
    o.totalDocuments = total_->isChecked();
    o.displayDirectory = directory_->isChecked();
    o.textePied = footer_->text();
    o.imagePied = footerImage_->text();
    return o;
}

}  // namespace brindar
