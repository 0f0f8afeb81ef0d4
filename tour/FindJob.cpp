#include "tour/Journey.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

namespace quorvik
{

namespace
{

QString FindCaption()
{
    return QStringLiteral("Find");
}

QString FoundIn(const QWidget *window, int row)
{
    const QAbstractItemModel *rows = window->findChild<QTreeView *>(QStringLiteral("ListFound"))->model();
    return rows->index(row, 1).data().toString();
}

/** Ctrl+F in the main window, and what is done once the field takes what is typed. */
void AddSearch(Tour &tour, const QString &what, const std::function<QString(QWidget *window)> &act)
{
    tour.Do(what, [&tour] {
        tour.TheProgram().Main().activateWindow();
        QTest::keyClick(&tour.TheProgram().Main(), Qt::Key_F, Qt::ControlModifier);
        return QString();
    });
    tour.Add(
        what + QStringLiteral(": the field takes what is typed"),
        [&tour] { return tour.User().WindowTitled(FindCaption()) && Hands::CanType(); },
        [&tour, act] { return act(tour.User().WindowTitled(FindCaption())); });
}

} // namespace

void AddFindJob(Tour &tour)
{
    const QString block = QStringLiteral("Accel/Decel");
    AddSearch(tour, QStringLiteral("Ctrl+F, \"acceleraton fwd\": parts of words, and a letter is missing"),
              [&tour](QWidget *window) {
                  if (QString failure = Hands::TypeOver(QStringLiteral("acceleraton fwd"));
                      !failure.isEmpty())
                      return failure;
                  tour.TakePicture(QStringLiteral("47-find"));
                  if (FoundIn(window, 0) != QLatin1String("(226) Fwd Accel A"))
                      return QStringLiteral("in front stands ") + FoundIn(window, 0);
                  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
                  return QString();
              });
    tour.Add(
        QStringLiteral("Enter leads to its box in its window"),
        [&tour, block] {
            return tour.User().WindowTitled(block) && !tour.User().WindowTitled(FindCaption());
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("48-found"));
            return QString();
        });
    AddSearch(tour, QStringLiteral("Ctrl+F again: what was found stands there"), [&tour](QWidget *window) {
        tour.TakePicture(QStringLiteral("49-found-recently"));
        const QString recent = FoundIn(window, 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        return recent == QLatin1String("(226) Fwd Accel A") ? QString()
                                                            : QStringLiteral("in front stands ") + recent;
    });
    tour.Add(
        QStringLiteral("Esc closes it"), [&tour] { return !tour.User().WindowTitled(FindCaption()); },
        [&tour, block] {
            tour.User().WindowTitled(block)->close();
            return QString();
        });
}

} // namespace quorvik
