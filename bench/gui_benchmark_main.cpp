// Entry point of the benchmarks whose code measures caption text with the
// system font, which needs a QGuiApplication (offscreen, no display needed).

#include <benchmark/benchmark.h>

#include <QGuiApplication>

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
