#include "tour/Journey.h"

#include "blocks/BlockCatalogue.h"
#include "desktop/Form.h"
#include "desktop/ValueBox.h"

#include <QApplication>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTest>

namespace quorvik
{

namespace
{

/** How a window is left again. */
enum class Leave { CloseButton, Escape, Frame, Stay };

/** A menu entry and the window that it opens. */
struct Visit {
    QString entry;
    QString caption;
    QString picture;
    Leave leave = Leave::Frame;
};

int VisibleValues(const QWidget *window)
{
    int values = 0;
    for (const ValueBox *box : window->findChildren<ValueBox *>())
        values += box->isVisible() && !box->text().isEmpty() ? 1 : 0;
    return values;
}

QString PictureName(const QString &prefix, const QString &caption)
{
    QString name = caption.toLower();
    for (QChar &character : name)
        if (!character.isLetterOrNumber())
            character = u'-';
    return prefix + name;
}

QString LeaveWindow(Tour &tour, QWidget *window, Leave how)
{
    switch (how) {
    case Leave::CloseButton:
        return tour.User().Click(window->findChild<QWidget *>(QStringLiteral("CommandClose")));
    case Leave::Escape:
        QTest::keyClick(window, Qt::Key_Escape);
        return {};
    case Leave::Frame:
        window->close();
        return {};
    case Leave::Stay:
        return {};
    }
    return {};
}

void AddVisit(Tour &tour, const Visit &visit)
{
    tour.Do(visit.caption, [&tour, visit] { return tour.User().ChooseMenu(visit.entry); });
    tour.Add(
        visit.caption + QStringLiteral(" is open"),
        [&tour, visit] { return tour.User().WindowTitled(visit.caption) != nullptr; },
        [&tour, visit] {
            QWidget *window = tour.User().WindowTitled(visit.caption);
            tour.TakePicture(visit.picture, window);
            return LeaveWindow(tour, window, visit.leave);
        },
        5000);
    if (visit.leave != Leave::Stay)
        tour.Add(
            visit.caption + QStringLiteral(" is closed again"),
            [&tour, visit] { return !tour.User().WindowTitled(visit.caption); }, [] { return QString(); },
            5000);
}

void AddMenuPictures(Tour &tour, const QString &prefix)
{
    for (const char *menu : {"mnuFile", "mnuBlockAnalogInputs", "mnuTools", "mnuWindow"})
        tour.Do(QStringLiteral("The menu %1").arg(QLatin1String(menu)), [&tour, menu, prefix] {
            const QString name = QString::fromLatin1(menu);
            QString failure = tour.User().OpenMenu(name);
            if (failure.isEmpty())
                tour.TakePicture(prefix + name);
            tour.User().CloseMenus();
            return failure;
        });
}

/** Types a number into each entry that is still empty, the first of them into the first one. */
void FillIn(const QWidget *page, const QStringList &numbers)
{
    qsizetype next = 0;
    for (QLineEdit *entry : page->findChildren<QLineEdit *>())
        if (entry->isVisible() && entry->isEnabled() && entry->text().isEmpty())
            QTest::keyClicks(entry, numbers[next++ % numbers.size()]);
}

/** One page of a Mentor after the other, answering as far as it insists on an answer. */
void AddMentor(Tour &tour, const QString &entry, const QString &form, const QStringList &numbers)
{
    constexpr int mostPages = 11;
    tour.Do(form, [&tour, entry] { return tour.User().ChooseMenu(entry); });
    for (int page = 0; page < mostPages; ++page)
        tour.Add(
            QStringLiteral("%1, page %2").arg(form).arg(page + 1),
            [&tour, form] { return tour.User().Modal(form) != nullptr; },
            [&tour, form, page, numbers] {
                QWidget *mentor = tour.User().Modal(form);
                FillIn(mentor, numbers);
                tour.TakePicture(QStringLiteral("60-%1-%2").arg(form).arg(page + 1, 2, 10, QChar(u'0')),
                                 mentor);
                auto *next = mentor->findChild<QWidget *>(ControlName("CmdNav", 3));
                // The last page stays the last one.
                return next->isEnabled() ? tour.User().Click(next) : QString();
            });
    tour.Add(
        form + QStringLiteral(", Cancel"), [&tour, form] { return tour.User().Modal(form) != nullptr; },
        [&tour, form] {
            const QWidget *finish = tour.User().Modal(form)->findChild<QWidget *>(ControlName("CmdNav", 4));
            if (!finish->isEnabled())
                return QStringLiteral("the Mentor did not come to its last page");
            return tour.User().Click(ControlName("CmdNav", 1));
        });
    tour.Add(
        form + QStringLiteral(" is closed again"), [] { return !QApplication::activeModalWidget(); },
        [] { return QString(); });
}

} // namespace

void AddBlockRound(Tour &tour)
{
    const auto windows = std::make_shared<int>(0);
    const auto values = std::make_shared<int>(0);
    AddMenuPictures(tour, QStringLiteral("09-"));
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet)
            continue;
        const int last = entry.IsFamily() ? entry.lastMember : 0;
        for (int member = entry.IsFamily() ? entry.firstMember : 0; member <= last; ++member) {
            const QString control = QString::fromLatin1(entry.control);
            const QString caption = entry.WindowCaption(member);
            tour.Do(caption, [&tour, name = entry.IsFamily() ? ControlName(entry.control, member) : control] {
                return tour.User().ChooseMenu(name);
            });
            tour.Add(
                caption + QStringLiteral(" is open, with its values"),
                [&tour, caption] {
                    const QWidget *window = tour.User().WindowTitled(caption);
                    const bool holdsBoxes = window && window->findChild<ValueBox *>();
                    return window && (!holdsBoxes || VisibleValues(window) > 0);
                },
                [&tour, caption, windows, values] {
                    QWidget *window = tour.User().WindowTitled(caption);
                    ++*windows;
                    *values += VisibleValues(window);
                    tour.TakePicture(PictureName(QStringLiteral("20-"), caption), window);
                    return LeaveWindow(tour, window, Leave::CloseButton);
                },
                5000);
            tour.Add(
                caption + QStringLiteral(" is closed again"),
                [&tour, caption] { return !tour.User().WindowTitled(caption); }, [] { return QString(); },
                5000);
        }
    }
    tour.Do(QStringLiteral("All blocks have been seen"), [&tour, windows, values] {
        tour.Note(QStringLiteral("block windows opened: %1, with %2 values").arg(*windows).arg(*values));
        return QString();
    });
}

void AddOnlineRound(Tour &tour)
{
    const auto choose = [&tour](const char *entry) {
        tour.Do(QString::fromLatin1(entry),
                [&tour, entry] { return tour.User().ChooseMenu(QString::fromLatin1(entry)); });
    };
    const auto picture = [&tour](const QString &name) {
        tour.Do(name, [&tour, name] {
            tour.TakePicture(name);
            return QString();
        });
    };
    choose("mnuBlockAnalogInputsAll");
    picture(QStringLiteral("30-analog-inputs-all"));
    choose("mnuWindowTileVertical");
    picture(QStringLiteral("31-tiled"));
    choose("mnuWindowMinimizeAll");
    picture(QStringLiteral("32-minimised"));
    choose("mnuWindowRestoreAll");
    choose("mnuWindowCascade");
    picture(QStringLiteral("33-cascaded"));
    choose("mnuWindowCloseAll");
    for (const char *entry : {"mnuBlockVloop", "mnuBlockAccelDecel", "mnuBlockAnalogInput(1)"})
        choose(entry);
    // The drawing moves on in the time that a look at it takes.
    const auto since = std::make_shared<QElapsedTimer>();
    tour.Add(
        QStringLiteral("A look at a few blocks on line"),
        [since] {
            if (!since->isValid())
                since->start();
            return since->elapsed() > 1500;
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("quorvik"));
            return QString();
        });
    choose("mnuWindowCloseAll");
    AddVisit(tour, {QStringLiteral("mnuListParameters(0)"), QStringLiteral("View Parameters"),
                    QStringLiteral("34-list"), Leave::CloseButton});
    AddVisit(tour, {QStringLiteral("mnuFileNotes"), QStringLiteral("Notes"), QStringLiteral("35-notes"),
                    Leave::CloseButton});
}

void AddOfflineRound(Tour &tour)
{
    for (const Visit &visit : {
             Visit{QStringLiteral("mnuToolsIOSimulator"), QStringLiteral("I/O Simulator"),
                   QStringLiteral("50-io-simulator")},
             Visit{QStringLiteral("mnuOptionsColorSettings"), QStringLiteral("Color Settings"),
                   QStringLiteral("51-colours")},
             Visit{QStringLiteral("mnuOptionsCommunications"), QStringLiteral("Select Comm Settings"),
                   QStringLiteral("52-communications"), Leave::Escape},
             Visit{QStringLiteral("mnuToolsSelectModel"), QStringLiteral("Select Drive Model"),
                   QStringLiteral("53-model"), Leave::Escape},
             Visit{QStringLiteral("mnuHelpAbout"), QStringLiteral("About Quorvik"),
                   QStringLiteral("54-about"), Leave::Escape},
         })
        AddVisit(tour, visit);
    AddMentor(tour, QStringLiteral("mnuMentorsBasic"), QStringLiteral("FormWizardBasic"),
              {QStringLiteral("100"), QStringLiteral("240"), QStringLiteral("1750"), QStringLiteral("1.5")});
    AddMentor(tour, QStringLiteral("mnuMentorIO"), QStringLiteral("FormWizardIO"),
              {QStringLiteral("10"), QStringLiteral("90")});

    tour.Do(QStringLiteral("Tools, Virtual Operator"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuToolsVirtualOperator")); });
    tour.Add(
        QStringLiteral("It asks before it takes the inputs: Yes"),
        [] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr; },
        [&tour] {
            tour.TakePicture(QStringLiteral("55-unassign-inputs"));
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            return tour.User().Click(box->button(QMessageBox::Yes));
        });
    tour.Add(
        QStringLiteral("Virtual Operator is open"),
        [&tour] { return tour.User().WindowTitled(QStringLiteral("Virtual Operator")) != nullptr; },
        [&tour] {
            QWidget *panel = tour.User().WindowTitled(QStringLiteral("Virtual Operator"));
            tour.TakePicture(QStringLiteral("56-virtual-operator"), panel);
            return LeaveWindow(tour, panel, Leave::CloseButton);
        });
}

} // namespace quorvik
