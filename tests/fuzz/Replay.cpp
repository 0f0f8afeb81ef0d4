// Runs a fuzz target over every file of the given folders and files: what the fuzzers keep or once found
// stays tested where there is no libFuzzer.

#include "Fuzzing.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QString::fromLocal8Bit(argv[i]), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly))
                return 1;
            const QByteArray input = file.readAll();
            std::printf("%s\n", qPrintable(QFileInfo(file).fileName()));
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                                   std::size_t(input.size()));
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
