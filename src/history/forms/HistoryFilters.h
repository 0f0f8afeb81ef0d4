#pragma once

#include "history/JournalReader.h"

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace quorvik
{

class HistoryHost;
struct Desk;

/** What of the history is shown: the controls above its list. */
class HistoryFilters : public QWidget
{
    Q_OBJECT

public:
    HistoryFilters(const Desk &desk, HistoryHost &host, QWidget *parent);

    const JournalFilter &Filter() const { return filter_; }
    /** The filter in words; empty where it shows all. */
    QString Text() const;
    /** Chooses one parameter, and nothing else. */
    void ShowOnly(int p);
    /** Whether there is a drive to be asked for may be another matter now. */
    void FollowLink();

Q_SIGNALS:
    void Changed();

private:
    QComboBox *MakeList(const QString &name, const QString &spoken);
    void FillLists();
    void TakeOver();

    const Desk &desk_;
    HistoryHost &host_;
    JournalFilter filter_;
    QLineEdit *textSearch_;
    QComboBox *comboParameter_;
    QComboBox *comboOrigin_;
    QComboBox *comboResult_;
    QComboBox *comboDays_;
    QCheckBox *checkThisDrive_;
    QTimer timerTyped_{this};
};

} // namespace quorvik
