#pragma once

#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdint>
#include <memory>

namespace quorvik
{

class DriveLink;

/**
 * A simulated drive in place of a machine. The program sarvex-drive runs as a child, and while it does port
 * number 0 stands for it, which no number of the user's is lost to. The child ends with this, or with this
 * program, however that ends.
 */
class DriveSimulation : public QObject
{
    Q_OBJECT

public:
    /** @param link must outlive it. @param programFolder where Presets.fil lies. */
    DriveSimulation(DriveLink &link, const QString &programFolder);
    ~DriveSimulation() override;

    /** How long the child may take to offer its port, in milliseconds. */
    int StartLimitMs = 10000;

    /**
     * Starts the child, and has the next opening of the port reach it once Ready() has told so. To be called
     * while the port is closed; one that runs already is ended first.
     * @param modelCode one of ModelListItems(). @param moves whether its machine runs by itself.
     */
    void Start(std::int32_t modelCode, bool moves);
    /** Ends the child and gives the port the number that it had before. */
    void End();
    /** From Start() until Ready() or Failed(). */
    bool IsStarting() const { return child_ && !isReady_; }
    /** From Ready() until it has ended. */
    bool IsRunning() const { return child_ && isReady_; }
    /** Whether the port that is chosen is the simulated drive's, also of one that has ended by itself: the
     * port of a drive that is gone must not become another drive's unasked. */
    bool IsChosen() const;

Q_SIGNALS:
    void Ready();
    /** It did not start, or has ended by itself; a sentence for the user. */
    void Failed(const QString &sentence);

private:
    QString Program() const;
    void Listen();
    void Fail(const QString &sentence);
    void EndChild();

    DriveLink &link_;
    QString programFolder_;
    std::unique_ptr<QTemporaryDir> folder_; ///< of the port
    std::unique_ptr<QProcess> child_;
    QTimer startLimit_;
    int numberBefore_ = 0; ///< of the port, while isReady_
    bool isReady_ = false; ///< port number 0 is the simulated drive's
};

} // namespace quorvik
