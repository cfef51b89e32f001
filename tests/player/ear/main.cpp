// ozna-ear: the ear for scripts.
//
//   ozna-ear listen FIFO [WAV]   listens until it is told to end (SIGTERM), then prints a line a sound: when it began,
//   in
//                                milliseconds since 1970, by the count of samples and by its arrival; how long it was;
//                                its level. With WAV, what was heard is written there.
//   ozna-ear gong WAV [MS]       writes the gong, or its first milliseconds
//   ozna-ear silence WAV MS      writes silence
#include "Ear.h"
#include "ear/Gong.h"
#include "ear/WavFile.h"

#include <QStringList>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace
{

constexpr qint64 FRAMES_A_MS = Pcm::RATE / 1000;

int Write(const QString& path, const std::vector<Pcm::Sample>& samples)
{
    const QString error = WavFile::Write(path, samples);
    if (error.isEmpty())
        return EXIT_SUCCESS;
    std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(error));
    return EXIT_FAILURE;
}

int Listen(const QStringList& arguments)
{
    // Taken before the ear's thread is there, so that no thread ends the process.
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGTERM);
    sigaddset(&ends, SIGINT);
    if (pthread_sigmask(SIG_BLOCK, &ends, nullptr) != 0)
        return EXIT_FAILURE;
    Ear ear(arguments[0]);
    int signal = 0;
    sigwait(&ends, &signal);
    ear.TakeAway();
    for (const Ear::Heard& sound : ear.Sounds())
        std::printf("%.3f\t%.3f\t%.1f\t%.3f\n", sound.at_ms, sound.arrived_ms,
                    static_cast<double>(sound.end - sound.begin) / FRAMES_A_MS, ear.Level(sound.begin, sound.end));
    return arguments.size() < 2 ? EXIT_SUCCESS : Write(arguments[1], ear.Samples(0, ear.Frames()));
}

int Run(const QStringList& arguments)
{
    const QString what = arguments.value(0);
    const QString path = arguments.value(1);
    const qint64 length_ms = arguments.value(2).toLongLong();
    if (what == QStringLiteral("listen") && !path.isEmpty())
        return Listen(arguments.mid(1));
    if (what == QStringLiteral("gong") && !path.isEmpty())
        return Write(path, Gong::Samples(length_ms > 0 ? length_ms : Gong::LENGTH_MS));
    if (what == QStringLiteral("silence") && length_ms > 0)
        return Write(path, std::vector<Pcm::Sample>(static_cast<size_t>(length_ms * FRAMES_A_MS * Pcm::CHANNELS)));
    std::fputs("ozna-ear listen FIFO [WAV] | gong WAV [MS] | silence WAV MS\n", stderr);
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    try
    {
        return Run(arguments);
    }
    catch (const std::exception& exception)
    {
        std::fprintf(stderr, "%s\n", exception.what());
        return EXIT_FAILURE;
    }
}
