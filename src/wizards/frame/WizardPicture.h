#pragma once

#include <QColor>
#include <QMap>
#include <QWidget>
#include <functional>

namespace quorvik
{

/** The colours of a picture, all from the palette, so that light and dark both come out right. */
struct Ink {
    explicit Ink(const QPalette &palette);

    QColor line;   ///< outlines and text
    QColor faint;  ///< what stands in the background
    QColor body;   ///< the inside of things
    QColor ground; ///< the picture's own background
    QColor accent; ///< what the page is about
    QColor onAccent;
};

/**
 * A file of the folder "pictures". What is drawn there in the colours of a picture comes out in those of the
 * palette, and what has a class is left out unless one of its words is a state.
 */
struct PictureFile {
    const char *name;
    QByteArray states = {};               ///< in words
    QMap<QByteArray, QString> texts = {}; ///< what stands for {name}; otherwise nothing does
};

/** The picture on a page's left, drawn on a canvas of fixed units that scales with the font. */
class WizardPicture : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ Text)

public:
    static constexpr int CanvasWidth = 220;
    static constexpr int CanvasHeight = 360;

    using FileFunction = std::function<PictureFile()>;

    /**
     * @param description what a person would say the picture shows.
     * @param file tells at each paint what the picture is now.
     */
    WizardPicture(QWidget *parent, const QString &description, FileFunction file);

    /** What the picture has written in it in its present states, word by word. */
    QString Text() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    /** Pixels for one unit of the canvas. */
    qreal Unit() const;
    /** Where the canvas begins. */
    QPointF Origin() const;

private:
    FileFunction file_;
};

/** The picture of a page that shows the answers in setup, which outlives it. */
template<class Setup>
WizardPicture *MakePicture(const QString &description, const Setup &setup, PictureFile (*file)(const Setup &))
{
    return new WizardPicture(nullptr, description, [&setup, file] { return file(setup); });
}

} // namespace quorvik
