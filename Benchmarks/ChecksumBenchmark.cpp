// SPDX-License-Identifier: Apache-2.0
// The checksum of a large payload against reading the file.
#include "Kernel/kxFile.h"
#include "Support/Comparison.h"

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t Megabyte = 1024 * 1024;
constexpr int Megabytes = 200;

void readBare(const std::string &path, std::vector<char> &buffer)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (::read(file, buffer.data(), buffer.size()) > 0) {
    }
    ::close(file);
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("payload.osb");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s cannot be written", qPrintable(path));
    QByteArray piece(static_cast<int>(Megabyte), '\0');
    for (int i = 0; i < Megabytes; ++i) {
        for (int k = 0; k < piece.size(); ++k)
            piece[k] = static_cast<char>(k * 31 + i * 17 + k / 251);
        file.write(piece);
    }
    file.close();

    std::vector<char> buffer(Megabyte / 4);
    std::uint32_t sum = 0;
    kxbench::Comparison comparison([&] { sum ^= kxFile::getChecksum(path.toUtf8().constData(), 0); },
                                   [&] { readBare(path.toStdString(), buffer); });
    comparison.run(15);
    kxbench::note("checksum of 200 MB", comparison);
    kxbench::report("checksum of a 200 MB payload", "reading the file alone", 1.5, 1.2, comparison.ratio());
}
