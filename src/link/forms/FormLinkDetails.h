#pragma once

#include "desktop/Form.h"

#include <QTimer>
#include <functional>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTableView;

namespace quorvik
{

class LinkStatistics;
class PacketLog;
class PacketModel;

/** "Link Details": how well the line works, and what passes on it. Packets are recorded while it is open. */
class FormLinkDetails : public Form
{
    Q_OBJECT

public:
    FormLinkDetails(Desk &desk, const LinkStatistics &statistics, PacketLog &log);

    static const QString &Name();

    QSize sizeHint() const override;

    /** Lets the user choose the file to save to, in a folder at first; a dialog unless replaced. */
    std::function<std::optional<QString>(const QString &folder)> ChooseFile;

protected:
    void Unload() override;

private:
    QLayout *MakeFigures();
    QLayout *MakeSilences();
    QLayout *MakeFilter();
    QTableView *MakePackets();
    QLayout *MakeCommands();
    void TimerUpdateScreen_Timer();
    void ShowFigures();
    void FollowPackets();
    void OnFilterChanged();
    void CommandStop_Click();
    void CommandSave_Click();
    std::optional<QString> ShowSaveDialog(const QString &folder);

    const LinkStatistics &statistics_;
    PacketLog &log_;
    PacketModel *model_;
    QLabel *labelState_;
    QList<QLabel *> labelFigures_;
    QListWidget *listSilences_;
    QLineEdit *textFilter_;
    QComboBox *comboKind_;
    QLabel *labelCount_;
    QTableView *packets_;
    QPushButton *commandStop_ = nullptr;
    QLabel *labelOutcome_;
    QTimer *timerUpdateScreen_;
    int ticks_ = 0;
};

} // namespace quorvik
