#pragma once

#include "desktop/Form.h"
#include "history/JournalReader.h"

#include <QTimer>
#include <functional>
#include <optional>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace quorvik
{

class HistoryFilters;
class HistoryHost;
class HistoryModel;
class HistoryView;

/** "History": what was changed, when, from where, and what became of it; the newest first. */
class FormHistory : public Form
{
    Q_OBJECT

public:
    FormHistory(Desk &desk, HistoryHost &host);

    static const QString &Name();

    /** Shows the changes of one parameter. */
    void ShowOnly(int p);
    HistoryView &View() { return *view_; }

    /** Lets the user choose the file to export to; the program shows a dialog. */
    std::function<std::optional<QString>(const QString &folder)> ChooseExport;

protected:
    void Unload() override;

private:
    QWidget *MakeCommands();
    QPushButton *MakeButton(const QString &name, const QString &caption, const QString &toolTip,
                            void (FormHistory::*act)());
    void FollowLink();
    /** The drive is asked who it is, until it has told. */
    void AskForDrive(bool isWanted);
    void FollowJournal();
    void ShowEmptiness();
    void ShowInWindow(const QModelIndex &line);
    void ShowMenu(const QPoint &place);
    void CopyLines();
    void CommandTakeBack_Click();
    void CommandStateAt_Click();
    void CommandExport_Click();
    void Tell(const QString &sentence);

    HistoryHost &host_;
    HistoryFilters *filters_;
    HistoryModel *model_;
    HistoryView *view_;
    QStackedWidget *middle_;
    QLabel *labelEmpty_;
    QLabel *labelOutcome_;
    std::vector<int> asked_; ///< parameters with a read interest of this window
    QTimer timerFollow_{this};
    QTimer timerUpdateScreen_{this};
};

} // namespace quorvik
