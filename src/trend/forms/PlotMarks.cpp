#include "trend/forms/PlotMarks.h"

#include "desktop/BoxColors.h"

#include <QStringList>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostTexts = 8; // in one tool tip

} // namespace

QString MarkLetter(TrendMarkKind kind)
{
    switch (kind) {
    case TrendMarkKind::Edit:
        return QStringLiteral("E");
    case TrendMarkKind::Fault:
        return QStringLiteral("F");
    case TrendMarkKind::Trigger:
        return QStringLiteral("T");
    case TrendMarkKind::Note:
        return QStringLiteral("N");
    case TrendMarkKind::LinkLost:
        return QStringLiteral("\u2013");
    case TrendMarkKind::LinkBack:
        return QStringLiteral("+");
    }
    return {};
}

QString MarkText(const TrendMark &mark)
{
    switch (mark.kind) {
    case TrendMarkKind::Edit:
        return QStringLiteral("Entered: ") + mark.text;
    case TrendMarkKind::Fault:
        return QStringLiteral("Fault: ") + mark.text;
    case TrendMarkKind::Note:
        return QStringLiteral("Note: ") + mark.text;
    case TrendMarkKind::Trigger:
    case TrendMarkKind::LinkLost:
    case TrendMarkKind::LinkBack:
        break;
    }
    return mark.text;
}

PlotMarks::PlotMarks(QCPAxisRect *rect, bool hasFlags)
    : PlotLayer(rect, QStringLiteral("main"))
    , hasFlags_(hasFlags)
{
}

void PlotMarks::Update(const std::vector<TrendMark> &marks, const PlotWindow &window)
{
    window_ = window;
    lines_.clear();
    const auto first = std::ranges::lower_bound(marks, window.fromUs, {}, &TrendMark::timeUs);
    for (auto mark = first; mark != marks.end() && mark->timeUs <= window.toUs; ++mark)
        lines_.push_back({mark->timeUs, mark->kind, hasFlags_ ? MarkText(*mark) : QString()});
}

QRect PlotMarks::clipRect() const
{
    return hasFlags_ ? QRect(rect_->outerRect().left(), rect_->outerRect().top(), rect_->outerRect().width(),
                             rect_->bottom() - rect_->outerRect().top() + 1)
                     : PlotLayer::clipRect();
}

QRectF PlotMarks::FlagOf(const Line &line) const
{
    const QFontMetricsF metrics(look_.font);
    const double width = metrics.horizontalAdvance(u'W') + 2;
    const double top = rect_->outerRect().top();
    return {XOf(line) - width / 2, top, width, rect_->top() - top - 1.0};
}

QPen PlotMarks::PenOf(TrendMarkKind kind) const
{
    switch (kind) {
    case TrendMarkKind::Fault:
        return {look_.text, 0, Qt::SolidLine};
    case TrendMarkKind::Trigger:
        return {look_.chosen, 0, Qt::SolidLine};
    case TrendMarkKind::Edit:
    case TrendMarkKind::Note:
    case TrendMarkKind::LinkLost:
    case TrendMarkKind::LinkBack:
        break;
    }
    return {look_.faint, 0, Qt::DashLine};
}

void PlotMarks::draw(QCPPainter *painter)
{
    painter->setFont(look_.font);
    double freeFromX = -1e9;
    double lastX = -1e9;
    for (const Line &line : lines_) {
        const QPen pen = PenOf(line.kind);
        const double x = XOf(line);
        if (x - lastX >= 1) {
            painter->setPen(pen);
            painter->drawLine(QLineF(x, rect_->top(), x, rect_->bottom()));
            lastX = x;
        }
        const QRectF flag = FlagOf(line);
        if (!hasFlags_ || flag.left() < freeFromX)
            continue;
        freeFromX = flag.right() + 1;
        painter->fillRect(flag, pen.color());
        painter->setPen(ContrastingText(pen.color()));
        painter->drawText(flag, Qt::AlignCenter, MarkLetter(line.kind));
    }
}

QString PlotMarks::TextAt(const QPoint &position) const
{
    QStringList texts;
    for (const Line &line : lines_)
        if (hasFlags_ && FlagOf(line).contains(position))
            texts.append(line.text);
    if (texts.size() > MostTexts) {
        const auto more = texts.size() - MostTexts;
        texts = texts.mid(0, MostTexts);
        texts.append(QStringLiteral("and %1 more").arg(more));
    }
    return texts.join(u'\n');
}

} // namespace quorvik
