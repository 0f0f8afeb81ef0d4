#include "trend/forms/FiguresPanel.h"

#include "model/Conversions.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "trend/TrendStatistics.h"
#include "trend/forms/ChannelModel.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Of the program's time, figures may take one part in so many. */
constexpr qint64 Sparing = 20;
constexpr int NumberCharacters = 14;

enum Column { Name, Least, Greatest, Mean, Effective, Slope, Count, Columns };

} // namespace

double SecondsAt(const TrendData &data, qint64 timeUs)
{
    return double(timeUs - data.triggerUs.value_or(data.head.beganUs)) / UsPerSecond;
}

FiguresPanel::FiguresPanel(TrendView &view, QWidget *parent)
    : QWidget(parent)
    , view_(view)
    , labelTimes_(new QLabel(this))
    , tableFigures_(new QTableWidget(0, Columns, this))
{
    labelTimes_->setObjectName(QStringLiteral("LabelTimes"));
    labelTimes_->setTextFormat(Qt::PlainText);
    tableFigures_->setObjectName(QStringLiteral("TableFigures"));
    tableFigures_->setAccessibleName(QStringLiteral("Figures"));
    tableFigures_->setHorizontalHeaderLabels({QStringLiteral("Channel"), QStringLiteral("Least"),
                                              QStringLiteral("Greatest"), QStringLiteral("Mean"),
                                              QStringLiteral("Effective"), QStringLiteral("Slope"),
                                              QStringLiteral("Samples")});
    tableFigures_->horizontalHeaderItem(Mean)->setToolTip(
        QStringLiteral("By time, along straight lines between the samples; gaps do not count"));
    tableFigures_->horizontalHeaderItem(Effective)->setToolTip(QStringLiteral("Root of the mean square"));
    tableFigures_->horizontalHeaderItem(Slope)->setToolTip(
        QStringLiteral("Of the straight line through the samples with the least squares"));
    tableFigures_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tableFigures_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tableFigures_->setTabKeyNavigation(false);
    tableFigures_->setShowGrid(false);
    tableFigures_->setAlternatingRowColors(true);
    tableFigures_->setWordWrap(false);
    tableFigures_->verticalHeader()->hide();
    const int rowHeight = fontMetrics().height() * 5 / 4;
    tableFigures_->verticalHeader()->setDefaultSectionSize(rowHeight);
    tableFigures_->setMinimumHeight(rowHeight + tableFigures_->horizontalHeader()->sizeHint().height());
    QHeaderView *header = tableFigures_->horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionResizeMode(Name, QHeaderView::Stretch);
    for (int column = Least; column < Columns; ++column)
        header->resizeSection(column, NumberCharacters * fontMetrics().averageCharWidth());
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tableFigures_, 1);
    layout->addWidget(labelTimes_);

    const auto follow = [this] {
        if (isVisible())
            ShowFigures();
    };
    On(&view, &TrendView::CursorsChanged, this, follow);
    On(&view, &TrendView::CurvesChanged, this, follow);
    On(&view, &TrendView::DataChanged, this, follow);
}

void FiguresPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    Guarded([this] { ShowFigures(); });
}

void FiguresPanel::Refresh()
{
    const bool isDue = !sinceShown_.isValid() || sinceShown_.elapsed() >= lastTookMs_ * Sparing;
    if (isVisible() && isDue)
        ShowFigures();
}

QString FiguresPanel::TimesText() const
{
    const TrendData &shown = view_.Shown();
    const auto seconds = [](double value) { return QString::number(value, 'f', 4) + QStringLiteral(" s"); };
    const std::optional<qint64> a = view_.Cursor(0);
    const std::optional<qint64> b = view_.Cursor(1);
    if (!a || !b)
        return QStringLiteral("Of what is seen, %1 to %2. Set cursors A and B in the plot for what is "
                              "between them.")
            .arg(seconds(SecondsAt(shown, view_.FromUs())), seconds(SecondsAt(shown, view_.ToUs())));
    const double difference = double(*b - *a) / UsPerSecond;
    QString text =
        QStringLiteral("A at %1, B at %2, B - A %3")
            .arg(seconds(SecondsAt(shown, *a)), seconds(SecondsAt(shown, *b)), seconds(difference));
    if (*a != *b)
        text += QStringLiteral(", 1 / (B - A) %1 Hz").arg(QString::number(1 / std::abs(difference), 'g', 5));
    return text;
}

void FiguresPanel::ShowFigures()
{
    QElapsedTimer took;
    took.start();
    qint64 from = view_.FromUs();
    qint64 to = view_.ToUs();
    if (const auto a = view_.Cursor(0), b = view_.Cursor(1); a && b) {
        from = std::min(*a, *b);
        to = std::max(*a, *b);
    }
    labelTimes_->setText(TimesText());
    const std::vector<TrendTrack> &tracks = view_.Shown().tracks;
    tableFigures_->setRowCount(int(tracks.size()));
    for (int row = 0; row < int(tracks.size()); ++row)
        ShowRow(row, tracks[std::size_t(row)], from, to);
    lastTookMs_ = took.elapsed();
    sinceShown_.start();
}

void FiguresPanel::ShowRow(int row, const TrendTrack &track, qint64 fromUs, qint64 toUs)
{
    const std::int32_t attributes = track.channel.attributes;
    const auto show = [&](int column, const QString &text) {
        QTableWidgetItem *item = tableFigures_->item(row, column);
        if (item == nullptr) {
            item = new QTableWidgetItem;
            item->setTextAlignment((column == Name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
            tableFigures_->setItem(row, column, item);
        }
        if (item->text() != text)
            item->setText(text);
    };
    show(Name, ChannelName(track.channel));
    const std::optional<TrendStatistics> figures = StatisticsOf(track, fromUs, toUs);
    if (!figures) {
        for (int column = Least; column < Columns; ++column)
            show(column, {});
        return;
    }
    const QString unit = UnitText(attributes).isEmpty() ? QString() : u' ' + UnitText(attributes);
    const auto number = [&](double value, int more) {
        return QString::number(value, 'f', DecimalsOf(attributes) + more) + unit;
    };
    show(Least, number(figures->least, 0));
    show(Greatest, number(figures->greatest, 0));
    // Of many samples a mean tells more than each of them does.
    show(Mean, number(figures->mean, 1));
    show(Effective, number(figures->effective, 1));
    show(Slope, number(figures->slope, 1) + QStringLiteral("/s"));
    show(Count, QString::number(figures->count));
}

} // namespace quorvik
