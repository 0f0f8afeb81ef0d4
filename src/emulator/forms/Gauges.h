#pragma once

#include <QStringList>
#include <QWidget>

namespace quorvik
{

/** A lamp that stands beside the text of an output. */
class Lamp : public QWidget
{
    Q_OBJECT

public:
    explicit Lamp(QWidget *parent);

    void SetLit(bool lit);
    bool IsLit() const { return lit_; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool lit_ = false;
};

/** A bar with zero in its middle, for a signal of -1 to 1 of full scale. */
class LevelBar : public QWidget
{
    Q_OBJECT

public:
    explicit LevelBar(QWidget *parent);

    void SetLevel(double level); ///< cut to -1 to 1
    double Level() const { return level_; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double level_ = 0.0;
};

/** The graduation under a slider or a bar: long ticks, each with its text, and short ones between them. */
class Ruler : public QWidget
{
    Q_OBJECT

public:
    /**
     * @param texts one for each long tick, at least two; all empty for a ruler without figures.
     * @param shortTicks how many divisions lie between two long ticks.
     * @param margin how far the first and the last tick stand from the ends, in pixels.
     */
    Ruler(QStringList texts, int shortTicks, int margin, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool HasTexts() const;

    QStringList texts_;
    int shortTicks_;
    int margin_;
};

} // namespace quorvik
