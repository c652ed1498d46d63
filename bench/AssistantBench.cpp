#include "ai/AIAssistantViewModel.h"
#include "ai/JsonString.h"
#include "ai/ReplyReader.h"
#include "platform/LineSplitter.h"
#include "platform/UserDefaults.h"
#include "support/BenchFolder.h"
#include "support/PairedRun.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ctime>
#include <string>

// What a reply that arrives costs the main loop: from a line's arrival to its piece in the view
// model, beside parsing its JSON alone; a piece of a long reply beside one of a short reply; and
// the longest stretch without a look at anything else when pieces come as fast as they are read.

namespace corvel {
namespace {

constexpr int kRounds = 41;
constexpr int kPieces = 1000;

// As Claude's: the kind of the event, and the text.
std::optional<std::string> pieceOf(std::string_view payload) {
    static const std::vector<JsonPath> kPaths{{"type"}, {"delta", "text"}};
    auto found = jsonStringsAt(payload, kPaths);
    return found[0] == "content_block_delta" ? std::move(found[1]) : std::nullopt;
}

constexpr ReplyFormat kFormat{pieceOf, "", isPast500Characters, errorMessageIn};

std::string payloadWith(const std::string& text) {
    return R"({"type":"content_block_delta","index":0,"delta":{"type":"text_delta","text":")" +
           text + "\"}}";
}

std::string eventsWith(const std::string& text, int count) {
    std::string events;
    for (int i = 0; i < count; ++i)
        events += "event: content_block_delta\ndata: " + payloadWith(text) + "\n\n";
    return events;
}

/// Hands the replies' handlers out instead of asking anybody.
class HeldSource : public AIProviderSource {
public:
    void makeProvider(AIProviderType, Made done) override {
        done(std::make_unique<Provider>(handler));
    }
    void hasKey(AIProviderType, std::function<void(bool)> done) override { done(true); }
    sigc::signal<void(AIProviderType)>& signalKeyChanged() override { return m_changed; }

    TextStream::Handler handler;

private:
    class Provider : public AIProviderService {
    public:
        explicit Provider(TextStream::Handler& handler) : m_handler(handler) {}
        AIProviderType providerType() const override { return AIProviderType::claude; }
        std::unique_ptr<TextStream> streamMessage(const std::vector<AIMessage>&,
                                                  const std::string&,
                                                  int,
                                                  TextStream::Handler handler) const override {
            m_handler = std::move(handler);
            return std::make_unique<TextStream>(std::unique_ptr<HttpTransfer>());
        }

    private:
        TextStream::Handler& m_handler;
    };

    sigc::signal<void(AIProviderType)> m_changed;
};

/// A chat whose reply the benchmark sends, as bytes from the network.
class Chat {
public:
    Chat() {
        model.signalPiece().connect([this](std::string_view piece) { shown += piece.size(); });
        model.setInputText("Hello");
        model.sendChatMessage();
        reader = std::make_unique<ReplyReader>(kFormat, "key", source.handler);
        reader->status(200);
    }
    void receive(std::string_view bytes) {
        lines.add(bytes, [this](std::string_view line) {
            reader->line(line);
            return true;
        });
    }

    BenchFolder folder;
    UserDefaults defaults{folder.path() / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    HeldSource source;
    AIAssistantViewModel model{source, preferences, texts};
    LineSplitter lines{std::size_t{16} * 1024 * 1024};
    std::unique_ptr<ReplyReader> reader;
    std::size_t shown = 0;
};

void lineToPiece(benchmark::State& state) {
    Chat chat;
    const auto events = eventsWith("some words ", kPieces);
    const auto payload = payloadWith("some words ");
    PairedRun(kRounds).run(
        state, [&] { chat.receive(events); },
        [&payload] {
            for (int i = 0; i < kPieces; ++i)
                benchmark::DoNotOptimize(nlohmann::json::parse(payload));
        });
}

void longReply(benchmark::State& state) {
    Chat longChat;
    Chat shortChat;
    longChat.receive(eventsWith(std::string(100'000, 'x'), 1));
    shortChat.receive(eventsWith(std::string(1000, 'x'), 1));
    // So few and short that the short reply stays short.
    const auto events = eventsWith("x", 100);
    PairedRun(kRounds).run(
        state, [&] { longChat.receive(events); }, [&] { shortChat.receive(events); });
}

/// Of this thread's own time: the machine may be shared.
double milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

// The network is read in chunks of 32 KB, each of which is worked off at once; here every line of
// them is a piece's.
void longestSlice(benchmark::State& state) {
    constexpr std::size_t kChunk = 32768;
    const auto events = eventsWith("ab ", 10 * kPieces);
    double longest = 0;
    double all = 0;
    for (auto _ : state) {
        Chat chat;
        const double begin = milliseconds();
        for (std::size_t at = 0; at < events.size(); at += kChunk) {
            const double start = milliseconds();
            chat.receive(std::string_view(events).substr(at, kChunk));
            longest = std::max(longest, milliseconds() - start);
        }
        all += milliseconds() - begin;
    }
    state.counters["longest_slice_ms"] = longest;
    state.counters["ms_for_10000_pieces"] = all / static_cast<double>(state.iterations());
}

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    corvel::registerPaired("line to piece, beside parsing its JSON", corvel::lineToPiece);
    corvel::registerPaired("100 pieces of a 100 KB reply, beside a 1 KB one", corvel::longReply);
    benchmark::RegisterBenchmark("10,000 pieces at once", corvel::longestSlice)->Iterations(20);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
