#include "trend/forms/TryTable.h"

#include "desktop/PlainText.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "platform/Guard.h"
#include "trend/StepTexts.h"

#include <QHeaderView>
#include <QScrollBar>
#include <iterator>

namespace quorvik
{

namespace
{

/** The gains stand above the figures. */
constexpr const char *GainCaptions[] = {"Proportional", "Integral", "Overshoot gain"};
constexpr int Gains = int(std::size(GainCaptions));

QStringList Captions()
{
    QStringList captions;
    for (const char *caption : GainCaptions)
        captions << QString::fromLatin1(caption);
    return captions + StepFigureCaptions();
}

const QString &NoFigure()
{
    static const QString none = QStringLiteral("-");
    return none;
}

QString GainsText(const StepTry &made, const ParameterTable &table)
{
    QStringList texts;
    for (const auto &[p, rawValue] : made.gains)
        texts << ShownText(rawValue, table[p].Attributes);
    return texts.join(QStringLiteral(" / "));
}

} // namespace

QString TitleOf(const StepTry &made, const ParameterTable &table)
{
    return QStringLiteral("%1, %2, %3")
        .arg(made.loop == TunedLoop::Velocity ? QStringLiteral("Velocity loop")
                                              : QStringLiteral("Current loop"),
             made.time.toString(QStringLiteral("hh:mm:ss")), GainsText(made, table));
}

TryTable::TryTable(const ParameterTable &table, QWidget *parent)
    : QTableWidget(int(Captions().size()), 0, parent)
    , table_(table)
{
    setObjectName(QStringLiteral("TableTries"));
    setAccessibleName(QStringLiteral("The last answers"));
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectColumns);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalHeaderLabels(Captions());
    verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    On(this, &QTableWidget::itemSelectionChanged, this, [this] {
        const QModelIndexList columns = selectionModel()->selectedColumns();
        if (!columns.isEmpty())
            Q_EMIT Picked(columns.first().column());
    });
}

void TryTable::Show(const std::deque<StepTry> &tries)
{
    // The columns move on: what was picked stands elsewhere now.
    clearSelection();
    setColumnCount(int(tries.size()));
    for (int column = 0; column < int(tries.size()); ++column) {
        const StepTry &made = tries[std::size_t(column)];
        auto *header = new QTableWidgetItem(made.time.toString(QStringLiteral("hh:mm:ss")));
        header->setToolTip(PlainToolTip(TitleOf(made, table_)));
        setHorizontalHeaderItem(column, header);
        const QString failure = SentenceOf(made.result.failure);
        // A loop may have fewer of them.
        for (int i = 0; i < Gains; ++i) {
            const bool isThere = i < int(made.gains.size());
            const auto [p, rawValue] = isThere ? made.gains[std::size_t(i)] : std::pair(0, 0);
            Put(i, column, isThere ? ShownText(rawValue, table_[p].Attributes) : NoFigure(),
                isThere ? table_.FullName(p) : QString());
        }
        const QStringList figures = StepFigureTexts(made.result);
        for (int i = 0; i < figures.size(); ++i)
            Put(Gains + i, column, figures[i], failure);
    }
    updateGeometry();
}

void TryTable::Put(int row, int column, const QString &text, const QString &toolTip)
{
    auto *item = new QTableWidgetItem(text);
    item->setToolTip(PlainToolTip(toolTip));
    setItem(row, column, item);
}

QString TryTable::AsText() const
{
    QStringList lines;
    QStringList heads{QStringLiteral("Time")};
    for (int column = 0; column < columnCount(); ++column)
        heads << horizontalHeaderItem(column)->text();
    lines << heads.join(u'\t');
    for (int row = 0; row < rowCount(); ++row) {
        QStringList cells{verticalHeaderItem(row)->text()};
        for (int column = 0; column < columnCount(); ++column)
            cells << item(row, column)->text();
        lines << cells.join(u'\t');
    }
    return lines.join(u'\n') + u'\n';
}

QSize TryTable::sizeHint() const
{
    const int height = horizontalHeader()->sizeHint().height() + verticalHeader()->length() +
                       horizontalScrollBar()->sizeHint().height() + 2 * frameWidth();
    return {QTableWidget::sizeHint().width(), height};
}

} // namespace quorvik
