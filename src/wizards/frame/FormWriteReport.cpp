#include "wizards/frame/FormWriteReport.h"

#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "wizards/frame/MentorTitle.h"
#include "wizards/frame/WizardPage.h"
#include "wizards/frame/WriteTable.h"
#include "wizards/frame/WriteWatch.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

using Outcome = WriteWatch::Outcome;

QString Sentences(const ParameterTable &table, const WriteWatch &watch)
{
    QStringList sentences;
    if (!table.PortOpen())
        sentences += QStringLiteral("The link to the drive is gone. What was not written to the drive stands "
                                    "in the settings of this program only.");
    else if (watch.Has(Outcome::NotWritten))
        sentences += QStringLiteral("This drive cannot take all of the values. What was not written to the "
                                    "drive stands in the settings of this program only.");
    if (watch.Has(Outcome::Refused)) {
        sentences += QStringLiteral("The drive refused values of the setup. They were taken back: the "
                                    "parameters have the drive's values again.");
        if (!table.DriveIsStopped())
            sentences += QStringLiteral("Sarvex must be in the Stop mode to take all of them.");
    }
    return sentences.join(QStringLiteral("\r\n\r\n"));
}

} // namespace

FormWriteReport::FormWriteReport(Desk &desk, QWidget *owner, const QString &helpTopic,
                                 const WriteWatch &watch)
    : DialogForm(desk, owner, QStringLiteral("FormWriteReport"), MentorTitle(), helpTopic)
{
    setAttribute(Qt::WA_DeleteOnClose);
    auto *rows = new QVBoxLayout(this);
    QLabel *sentences = MakeLabel(this, Sentences(desk.table, watch), QStringLiteral("LabelReport"));
    sentences->setWordWrap(true);
    rows->addWidget(sentences);

    auto *table = new WriteTable(this, QStringLiteral("New Value"), QStringLiteral("In the Drive"), 14);
    table->setAccessibleName(QStringLiteral("What became of the values"));
    // What is missing in the drive stands first.
    std::vector<WriteRow> lost;
    std::vector<WriteRow> others;
    const std::vector<PlannedLine> lines = watch.Plan().Lines(desk.table);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Outcome outcome = watch.OutcomeOf(i);
        QString text = QStringLiteral("written");
        if (outcome == Outcome::HasAlready)
            text = QStringLiteral("has it already");
        else if (outcome == Outcome::Refused)
            text = desk.table.PortOpen() ? QStringLiteral("refused, has ") + lines[i].oldText
                                         : QStringLiteral("refused");
        else if (outcome == Outcome::NotWritten)
            text = QStringLiteral("not written");
        (watch.IsLost(i) ? lost : others)
            .push_back({lines[i].param, lines[i].name, lines[i].newText, text, watch.IsLost(i)});
    }
    lost.insert(lost.end(), others.begin(), others.end());
    table->ShowRows(lost);
    rows->addWidget(table, 1);

    auto *close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("CommandClose"));
    close->setDefault(true);
    On(close, &QPushButton::clicked, this, [this] { accept(); });
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(close);
    buttons->addWidget(MakeCommandHelp());
    rows->addLayout(buttons);
    const int em = fontMetrics().height();
    resize(em * 38, em * 26);
    close->setFocus(Qt::OtherFocusReason);
}

} // namespace quorvik
