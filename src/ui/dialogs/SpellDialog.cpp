#include "SpellDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTextEdit>

namespace tessaly::ui {

namespace {
// How much of the text is shown either side of the word.
constexpr int ContextChars = 120;
// The height of the sentence box, in lines of text.
constexpr int ContextLines = 4;
const QString Title = QStringLiteral("Spell Check");

// The word's surroundings with the word in bold.
QString contextHtml(const SpellQuery& query) {
    const int start = std::max(0, query.position - ContextChars);
    const int end = std::min(static_cast<int>(query.text.size()),
                             query.position + static_cast<int>(query.word.size()) + ContextChars);
    const QString before = query.text.mid(start, query.position - start).toHtmlEscaped();
    const QString after =
        query.text.mid(query.position + query.word.size(), end - query.position - query.word.size())
            .toHtmlEscaped();
    return QStringLiteral("%1%2<b><font color=\"#c00000\">%3</font></b>%4%5")
        .arg(start > 0 ? QStringLiteral("… ") : QString(), before, query.word.toHtmlEscaped(), after,
             end < query.text.size() ? QStringLiteral(" …") : QString())
        .replace(QLatin1Char('\n'), QStringLiteral("<br>"));
}
} // namespace

SpellDialog::SpellDialog(const SpellQuery& query, QWidget* parent)
    : QDialog(parent), context_(new QTextEdit(this)), replacement_(new QLineEdit(this)),
      suggestions_(new QListWidget(this)), replace_(new QPushButton(tr("&Replace"), this)) {
    setObjectName(QStringLiteral("SpellDialog"));
    setWindowTitle(Title);
    auto* grid = new QGridLayout(this);
    auto* notFound = new QLabel(tr("Not in the dictionary:"), this);
    grid->addWidget(notFound, 0, 0, 1, 2);
    context_->setReadOnly(true);
    context_->setHtml(contextHtml(query));
    context_->setFixedHeight(context_->fontMetrics().lineSpacing() * ContextLines + 12);
    grid->addWidget(context_, 1, 0, 1, 2);
    auto* changeTo = new QLabel(tr("Change &to:"), this);
    changeTo->setBuddy(replacement_);
    grid->addWidget(changeTo, 2, 0);
    replacement_->setObjectName(QStringLiteral("replacement"));
    replacement_->setText(query.suggestions.value(0, query.word));
    grid->addWidget(replacement_, 2, 1);
    auto* suggestionsLabel = new QLabel(tr("&Suggestions:"), this);
    suggestionsLabel->setBuddy(suggestions_);
    grid->addWidget(suggestionsLabel, 3, 0, Qt::AlignTop);
    suggestions_->setObjectName(QStringLiteral("suggestions"));
    suggestions_->addItems(query.suggestions);
    if (!query.suggestions.isEmpty())
        suggestions_->setCurrentRow(0);
    grid->addWidget(suggestions_, 3, 1);

    auto* buttons = new QDialogButtonBox(Qt::Horizontal, this);
    replace_->setObjectName(QStringLiteral("replace"));
    replace_->setDefault(true);
    auto* ignore = new QPushButton(tr("&Ignore"), this);
    ignore->setObjectName(QStringLiteral("ignore"));
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancel"));
    buttons->addButton(replace_, QDialogButtonBox::ActionRole);
    buttons->addButton(ignore, QDialogButtonBox::ActionRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    grid->addWidget(buttons, 4, 0, 1, 2);

    connect(suggestions_, &QListWidget::currentTextChanged, replacement_, &QLineEdit::setText);
    connect(suggestions_, &QListWidget::itemDoubleClicked, this,
            [this] { finish(SpellChoice::Action::Replace); });
    connect(replace_, &QPushButton::clicked, this, [this] { finish(SpellChoice::Action::Replace); });
    connect(ignore, &QPushButton::clicked, this, [this] { finish(SpellChoice::Action::Ignore); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    replacement_->setFocus();
    replacement_->selectAll();
}

void SpellDialog::finish(SpellChoice::Action action) {
    choice_.action = action;
    choice_.replacement = replacement_->text();
    accept();
}

} // namespace tessaly::ui
