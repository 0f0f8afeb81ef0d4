#pragma once

#include <QLabel>
#include <QTextEdit>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvik
{

/** The names of the faults of a word, in the room that it is given; where not all fit, how many more there
 * are. */
class FaultNamesLabel : public QLabel
{
    Q_OBJECT

public:
    explicit FaultNamesLabel(QWidget *parent);

    void ShowFaults(std::int32_t rawFaults);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void Fill();

    std::int32_t rawFaults_ = 0;
};

/** A word of fault bits, and who tells it. */
struct ToldFaults {
    std::int32_t rawFaults = 0;
    QString by; ///< "latched"
};

/** Explains faults: what each means, and what to check. */
class RemedyText : public QTextEdit
{
    Q_OBJECT

public:
    explicit RemedyText(QWidget *parent);

    /** Explains every fault once, those of the first words first. */
    void Explain(const std::vector<ToldFaults> &told);

private:
    void Add(const QString &name, const QString &by, const QString &meaning, const QString &check);

    QString shown_;
};

/** An arrow from its top to its bottom. */
class DownArrow : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quorvik
