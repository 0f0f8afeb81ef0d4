#include "blocks/FaultTexts.h"

#include "desktop/PlainText.h"
#include "model/Faults.h"

#include <QPainter>
#include <QTextBlock>

namespace quorvik
{

namespace
{

QString Joined(const QStringList &names)
{
    return names.isEmpty() ? QStringLiteral("None") : names.join(QStringLiteral(", "));
}

} // namespace

FaultNamesLabel::FaultNamesLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Fill();
}

void FaultNamesLabel::ShowFaults(std::int32_t rawFaults)
{
    if (rawFaults == rawFaults_)
        return;
    rawFaults_ = rawFaults;
    Fill();
}

void FaultNamesLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    Fill();
}

void FaultNamesLabel::Fill()
{
    QStringList names = FaultNames(rawFaults_);
    const QString all = Joined(names);
    QString shown = all;
    const qsizetype count = names.size();
    const auto fits = [&] {
        return fontMetrics().boundingRect(QRect(0, 0, width(), height()), Qt::TextWordWrap, shown).height() <=
               height();
    };
    while (names.size() > 1 && !fits()) {
        names.removeLast();
        shown = QStringLiteral("%1 and %2 more").arg(Joined(names)).arg(count - names.size());
    }
    setText(shown);
    SetPlainToolTip(this, rawFaults_ == 0 ? QString() : all);
    SetSpokenText(this, all);
}

RemedyText::RemedyText(QWidget *parent)
    : QTextEdit(parent)
{
    setObjectName(QStringLiteral("TextRemedies"));
    setAccessibleName(QStringLiteral("What it means, what to check"));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setMinimumHeight(4 * fontMetrics().lineSpacing());
}

void RemedyText::Explain(const std::vector<ToldFaults> &told)
{
    QString wanted;
    for (const ToldFaults &each : told)
        wanted += QString::number(each.rawFaults) + each.by + u';';
    // What the user scrolled to stays while the faults do.
    if (wanted == shown_)
        return;
    shown_ = wanted;
    clear();
    std::int32_t explained = 0;
    for (const ToldFaults &each : told)
        for (const Fault &fault : FaultsOf(each.rawFaults & ~explained)) {
            QStringList by;
            for (const ToldFaults &other : told)
                if (other.rawFaults & fault.mask)
                    by += other.by;
            Add(fault.name, by.join(QStringLiteral(", ")), fault.meaning, fault.check);
            explained |= fault.mask;
        }
    if (explained == 0)
        setPlainText(
            QStringLiteral("No fault is latched or present, and none stands in the line of the log with the "
                           "cursor."));
    moveCursor(QTextCursor::Start);
}

void RemedyText::Add(const QString &name, const QString &by, const QString &meaning, const QString &check)
{
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    if (!document()->isEmpty())
        cursor.insertBlock();
    QTextCharFormat plain;
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    QTextBlockFormat paragraph;
    paragraph.setTopMargin(document()->blockCount() > 1 ? fontMetrics().height() / 2.0 : 0);
    cursor.setBlockFormat(paragraph);
    cursor.insertText(name, bold);
    cursor.insertText(QStringLiteral(" (%1)").arg(by), plain);
    paragraph.setTopMargin(0);
    paragraph.setLeftMargin(fontMetrics().height());
    for (const auto &[head, text] : {std::pair(QStringLiteral("What it means: "), meaning),
                                     std::pair(QStringLiteral("What to check: "), check)}) {
        cursor.insertBlock(paragraph);
        cursor.insertText(head, bold);
        cursor.insertText(text, plain);
    }
}

void DownArrow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setBrush(palette().color(QPalette::WindowText));
    const double x = width() / 2.0;
    const double gap = height() / 10.0;
    const double tip = height() - gap;
    const double head = height() / 8.0;
    painter.drawLine(QPointF(x, gap), QPointF(x, tip));
    painter.drawPolygon(QPolygonF{{x, tip}, {x - head / 1.5, tip - head}, {x + head / 1.5, tip - head}});
}

} // namespace quorvik
