#pragma once

#include <QButtonGroup>
#include <QRadioButton>
#include <QStringList>

namespace quorvik
{

/** A group of option buttons, "Name(0)" and on, of which one or none is chosen. */
class OptionGroup : public QObject
{
    Q_OBJECT

public:
    OptionGroup(QWidget *parent, const char *name, const QStringList &captions);

    QRadioButton *Option(int index) const { return options_.at(index); }
    int Count() const { return int(options_.size()); }
    int Chosen() const { return group_->checkedId(); } ///< -1 for none

    /** Chooses an option; an index beyond the group chooses nothing new. */
    void Choose(int index);
    /** Chooses the first option where none is chosen. */
    void ChooseFirst();
    void ClearChoice();
    /** Enables the options from first to last. */
    void Enable(int first, int last, bool enable);

Q_SIGNALS:
    /** An option became chosen, by the user or by the program. */
    void Click(int index);

private:
    QButtonGroup *group_;
    QList<QRadioButton *> options_;
};

} // namespace quorvik
