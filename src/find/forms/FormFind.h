#pragma once

#include "desktop/Form.h"
#include "find/RecentFinds.h"
#include "model/ReadInterest.h"

#include <QTimer>
#include <set>

class QLabel;
class QLineEdit;
class QTreeView;

namespace quorvik
{

class FindHost;
class FindModel;
struct FindEntry;

/**
 * "Find": one field over parameters, windows, commands and help topics, and what it finds, the best first,
 * with values that follow the table. The keys work while the focus stays in the field.
 */
class FormFind : public Form
{
    Q_OBJECT

public:
    /** Opens at the middle of the top of the main window, which owns it. */
    FormFind(Desk &desk, FindHost &host, QWidget *mainWindow);

    static const QString &Name();

    QSize sizeHint() const override;
    /** Brings it in front; what is typed next replaces the text. */
    void TakeFocus();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void Unload() override;

private:
    enum class Act { Open, Edit, Map };

    void MakeListView();
    void Place(const QWidget &mainWindow);
    void FollowTable();
    void Follow();
    /** The drive is asked for what can be seen, and for nothing else. */
    void ReadRowsInSight();
    void Search();
    void SpeakCurrent();
    void ShowMenu(const QPoint &place);
    bool TakesKey(int key, Qt::KeyboardModifiers modifiers);
    void Do(Act act);
    void Open(const FindEntry &entry);
    void Edit(int p);
    /** For good, with the focus back in the main window. */
    void Leave(const FindEntry &entry);
    void Tell(const QString &sentence);

    FindHost &host_;
    QWidget *mainWindow_;
    RecentFinds recent_;
    FindModel *model_;
    QLineEdit *textFind_;
    QTreeView *listFound_;
    QLabel *labelFound_;
    ReadInterest read_;     ///< in what can be seen
    std::set<int> changed_; ///< since the rows followed last
    bool wasOnline_;
    QTimer timerFollow_{this};
};

} // namespace quorvik
