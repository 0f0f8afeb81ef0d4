#pragma once

#include <QWidget>

namespace quorvik
{

/** The drawing behind the greeting: a drive, its motor and the curve of a ramp, sharp at every scale. */
class WelcomePicture : public QWidget
{
    Q_OBJECT

public:
    explicit WelcomePicture(QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quorvik
