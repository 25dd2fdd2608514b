// bench-window: shows the desktop program's window with its traffic view open, and feeds the engine's traffic queue
// with a given number of lines a second. Writes its observations into a file, see Observations in TrafficView.cpp.

#include "app/Desktop.h"
#include "dictionary/TextHolder.h"
#include "line/TrafficQueue.h"
#include "ui/MainPanel.h"
#include "ui/MainWindow.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace {

using namespace tarvin;
using namespace std::chrono_literals;
using Time = std::chrono::steady_clock;

constexpr auto feedPeriod = 1ms;
constexpr auto questionPeriod = 10ms;
constexpr auto restPeriod = 1s;
constexpr std::u32string_view gapHead = U"... ";

struct Load {
    std::chrono::seconds duration{};
    double linesPerSecond = 0;
    std::string resultFile;
};

double ThreadSeconds() {
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::size_t PeakBytes() {
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

// Counts the lines and paints of the traffic view. Runs on the window's thread.
class Observer {
public:
    explicit Observer(TextPane& pane) : pane(pane) {}

    void Begin() {
        seenEnd = pane.Lines().End();
        paintsBefore = pane.PaintCount();
        secondsBefore = ThreadSeconds();
    }

    void Answer(Time::time_point asked) {
        answers.push_back(Time::now() - asked);
        LookAtLines();
    }

    // Ends the measured time. Lines that are still on their way count until Finish.
    void End(std::chrono::duration<double> elapsed) {
        seconds = elapsed.count();
        paints = pane.PaintCount() - paintsBefore;
        threadSeconds = ThreadSeconds() - secondsBefore;
    }

    bool Finish(std::size_t lineCount, const std::string& file) {
        LookAtLines();
        std::ofstream stream(file);
        stream << seconds << '\n' << lineCount << '\n' << shown << '\n' << notShown << '\n' << paints << '\n';
        stream << threadSeconds << '\n' << PeakBytes() << '\n';
        for (const auto answer : answers)
            stream << std::chrono::nanoseconds(answer).count() << '\n';
        return static_cast<bool>(stream << std::flush);
    }

private:
    // Called so often that the pane has not dropped any line since the last call. A note stands for lines that the
    // traffic queue could not hold.
    void LookAtLines() {
        const TextLines& lines = pane.Lines();
        for (; seenEnd < lines.End(); ++seenEnd) {
            ++shown;
            if (seenEnd < lines.First() || lines.At(seenEnd).kind != TextLines::Kind::Note)
                continue;
            const std::u32string& text = lines.At(seenEnd).text;
            --shown;
            if (text.starts_with(gapHead))
                notShown += std::strtoull(std::string(text.begin() + gapHead.size(), text.end()).c_str(), nullptr, 10);
        }
    }

    TextPane& pane;
    std::vector<Time::duration> answers;
    std::uint64_t seenEnd = 0;
    std::size_t paintsBefore = 0;
    double secondsBefore = 0;
    double seconds = 0;
    std::size_t shown = 0;
    std::size_t notShown = 0;
    std::size_t paints = 0;
    double threadSeconds = 0;
};

// Pushes received lines into the traffic queue, as the engine does, and asks the window's thread for an answer every
// 10 ms. Runs on a thread of its own.
class Feeder {
public:
    Feeder(TrafficQueue& traffic, WindowEvents& events, Observer& observer)
        : traffic(traffic), events(events), observer(observer) {}

    // Blocks until all lines are in the queue. Returns their number.
    std::size_t Run(const Load& load) {
        OnWindowThread([this] { observer.Begin(); });
        const auto started = Time::now();
        auto nextQuestion = started;
        for (auto now = started; now < started + load.duration; now = Time::now()) {
            const std::chrono::duration<double> elapsed = now - started;
            const auto due = static_cast<std::size_t>(elapsed.count() * load.linesPerSecond);
            PushUpTo(due);
            if (now >= nextQuestion) {
                events.Post([this, now] { observer.Answer(now); });
                nextQuestion = now + questionPeriod;
            }
            std::this_thread::sleep_for(feedPeriod);
        }
        OnWindowThread([this, started] { observer.End(Time::now() - started); });
        return lineCount;
    }

    void OnWindowThread(const std::function<void()>& call) {
        std::promise<void> done;
        events.Post([&] {
            call();
            done.set_value();
        });
        done.get_future().wait();
    }

private:
    void PushUpTo(std::size_t due) {
        for (; lineCount < due; ++lineCount) {
            char text[96];
            std::snprintf(text, sizeof text, "RX ABDL%06zu N%zu G01 X%zu.000 Y45.500[0d]", lineCount, lineCount * 10,
                          lineCount % 1000);
            // Push returns true if the window had taken all earlier lines, and so has to be woken.
            if (traffic.Push({TrafficLine::Kind::Received, text}))
                events.TrafficArrived();
        }
    }

    TrafficQueue& traffic;
    WindowEvents& events;
    Observer& observer;
    std::size_t lineCount = 0;
};

void OpenView(MainWindow& window) {
    wxCheckBox* view = window.Panel().viewSwitch;
    view->SetValue(true);
    wxCommandEvent checked(wxEVT_CHECKBOX, view->GetId());
    checked.SetEventObject(view);
    checked.SetInt(1);
    view->GetEventHandler()->ProcessEvent(checked);
}

class BenchApp : public wxApp {
public:
    BenchApp(const Program& program, Load load) : program(program), load(std::move(load)) {}

    bool OnInit() override { return true; }

    int OnRun() override {
        Desktop desktop(program, {});
        desktop.Start();
        OpenView(desktop.Window());

        Observer observer(desktop.Window().Panel().monitor->Traffic());
        Feeder feeder(desktop.Engine().Traffic(), desktop.Events(), observer);
        bool isWritten = false;
        std::thread feeding([&] {
            std::this_thread::sleep_for(restPeriod);
            const std::size_t lineCount = feeder.Run(load);
            std::this_thread::sleep_for(restPeriod);
            feeder.OnWindowThread([&] { isWritten = observer.Finish(lineCount, load.resultFile); });
            desktop.RequestClose();
        });
        wxApp::OnRun();
        feeding.join();
        return isWritten ? 0 : 1;
    }

private:
    const Program& program;
    const Load load;
};

}

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        std::fputs("Usage: bench-window SECONDS LINES-PER-SECOND RESULT-FILE\n", stderr);
        return 2;
    }
    auto installation = FindProgramInstallation();
    if (!installation) {
        std::fprintf(stderr, "bench-window: %s\n", ToUtf8(installation.Reason().text).c_str());
        return 1;
    }
    const Program program(std::move(*installation), u"");
    wxApp::SetInstance(
        new BenchApp(program, {std::chrono::seconds(std::atoi(arguments[1])), std::atof(arguments[2]), arguments[3]}));
    int toolkitArgumentCount = 1;
    return wxEntry(toolkitArgumentCount, arguments);
}
