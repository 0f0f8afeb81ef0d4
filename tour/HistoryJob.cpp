#include "tour/Journey.h"

#include "history/forms/FormHistory.h"
#include "history/forms/HistoryModel.h"
#include "history/forms/HistoryView.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>

namespace quorvik
{

namespace
{

QString HistoryCaption()
{
    return QStringLiteral("History");
}

FormHistory *TheWindow(Tour &tour)
{
    const QWidget *frame = tour.User().WindowTitled(HistoryCaption());
    return frame ? frame->findChild<FormHistory *>() : nullptr;
}

/** The newest line below the newest run. */
QModelIndex NewestLine(Tour &tour)
{
    FormHistory *window = TheWindow(tour);
    const QAbstractItemModel *lines = window ? window->View().model() : nullptr;
    return lines ? lines->index(0, 0, lines->index(0, 0)) : QModelIndex();
}

QString Cell(const QModelIndex &line, int column)
{
    return line.siblingAtColumn(column).data().toString();
}

} // namespace

void AddHistoryJob(Tour &tour)
{
    const QString compare = QStringLiteral("Compare");
    tour.Do(QStringLiteral("Tools, History: what has been done so far"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuToolsHistory")); });
    tour.Add(
        QStringLiteral("All of it stands there; only what was typed, please"),
        [&tour] { return NewestLine(tour).isValid(); },
        [&tour] {
            tour.TakePicture(QStringLiteral("39-history"));
            auto *origins = TheWindow(tour)->findChild<QComboBox *>(QStringLiteral("ComboOrigin"));
            origins->setCurrentIndex(origins->findText(NameOf(Origin::EditDialog)));
            return QString();
        });
    tour.Add(
        QStringLiteral("The limit that was set right has reached the drive; how was it before?"),
        [&tour] {
            return Cell(NewestLine(tour), HistoryModel::WhatColumn).contains(QLatin1String("Max Speed")) &&
                   Cell(NewestLine(tour), HistoryModel::ResultColumn) == NameOf(EntryResult::Verified);
        },
        [&tour] {
            const QModelIndex line = NewestLine(tour);
            tour.Say(QStringLiteral("   %1: %2 to %3")
                         .arg(Cell(line, HistoryModel::WhatColumn), Cell(line, HistoryModel::FromColumn),
                              Cell(line, HistoryModel::ToColumn)));
            TheWindow(tour)->View().setCurrentIndex(line);
            tour.TakePicture(QStringLiteral("39-history-edits"));
            return tour.User().Click(
                TheWindow(tour)->findChild<QWidget *>(QStringLiteral("CommandTakeBack")));
        });
    tour.Add(
        QStringLiteral("Compare has it ticked, and copies nothing unasked"),
        [&tour, compare] {
            const QWidget *window = tour.User().WindowTitled(compare);
            return window && !QApplication::activeModalWidget() &&
                   window->findChild<QLabel *>(QStringLiteral("LabelCounts"))
                       ->text()
                       .contains(QLatin1String("1 ticked"));
        },
        [&tour, compare] {
            tour.TakePicture(QStringLiteral("39-history-take-back"));
            tour.User().WindowTitled(compare)->close();
            TheWindow(tour)->close();
            return QString();
        });
}

} // namespace quorvik
