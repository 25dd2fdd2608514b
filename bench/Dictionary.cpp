#include "AllocationCount.h"
#include "Measures.h"
#include "dictionary/DictionaryFile.h"
#include "dictionary/PackedBytes.h"
#include "dictionary/TextHolder.h"
#include "harness/TemporaryFolder.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace tarvin::bench {

using namespace std::chrono_literals;

namespace {

constexpr std::int32_t entryCount = 10000;
constexpr std::size_t translationCount = 5; // beside English
constexpr std::size_t lookupCount = 1000000;

// Makes texts of one to twelve words, of the length of a program's texts.
class TextMaker {
public:
    TextMaker() {
        for (KelText& word : words) {
            word.resize(2 + random() % 9);
            std::generate(word.begin(), word.end(), [&] { return letters[random() % letters.size()]; });
        }
    }
    KelText Next() {
        KelText text = words[random() % words.size()];
        for (std::size_t more = random() % 12; more > 0; --more)
            text += u' ' + words[random() % words.size()];
        return text;
    }

private:
    static constexpr KelTextView letters =
        u"eeeeennnnniiirrrssstttaaadhulcgmobfkzpvjyxqwEAISTDMP\u00E4\u00F6\u00FC\u00E9";
    std::mt19937 random{1};
    std::vector<KelText> words = std::vector<KelText>(5000);
};

DictionaryContent MakeContent() {
    TextMaker maker;
    DictionaryContent content;
    for (std::size_t language = 0; language < translationCount; ++language)
        content.languages.push_back({maker.Next(), 1031, 1252, maker.Next()});
    for (std::int32_t id = 0; id < entryCount; ++id) {
        TextEntry& entry = content.entries.emplace_back();
        entry.id = id;
        entry.phrase = maker.Next();
        for (std::size_t language = 0; language < translationCount; ++language)
            entry.translations.push_back(maker.Next());
    }
    return content;
}

std::vector<Nanoseconds> TimesToLoad(const DictionaryContent& content, std::string_view bytes, std::size_t repetitions,
                                     TextHolder& holder) {
    const test::TemporaryFolder folder;
    folder.WriteFile("diction.ary", bytes);
    std::vector<Nanoseconds> samples;
    for (std::size_t repetition = 0; repetition < repetitions; ++repetition) {
        const auto started = SteadyTime::now();
        const auto isLoaded = holder.Load({.fileName = folder / "diction.ary", .language = 2});
        samples.push_back(SteadyTime::now() - started);
        if (!isLoaded || content.entries.back().translations[2] != holder.Text(entryCount - 1))
            throw std::runtime_error("loading the dictionary gave wrong texts");
    }
    return samples;
}

void MeasureLookups(const DictionaryContent& content, const TextHolder& holder, Table& table) {
    std::mt19937 random{2};
    std::vector<std::int32_t> ids(lookupCount);
    std::generate(ids.begin(), ids.end(), [&] { return static_cast<std::int32_t>(random() % entryCount); });
    std::size_t sum = 0;
    std::size_t expected = 0;
    for (const std::int32_t id : ids)
        expected += content.entries[static_cast<std::size_t>(id)].translations[2].front();
    const std::size_t allocationsBefore = AllocationCount();
    const auto started = SteadyTime::now();
    for (const std::int32_t id : ids)
        sum += *holder.Text(id);
    const Nanoseconds time = SteadyTime::now() - started;
    const std::size_t allocations = AllocationCount() - allocationsBefore;
    if (sum != expected)
        throw std::runtime_error("looking up a text gave a wrong one");
    if (allocations > 0)
        throw std::runtime_error("looking up a text allocates memory");
    const double nanoseconds = static_cast<double>(time.count()) / static_cast<double>(lookupCount);
    table.Inform("text by id, any of 10,000", {nanoseconds, "ns", 1});
}

}

void MeasureDictionary(const Effort& effort, Table& table) {
    const DictionaryContent content = MakeContent();
    const std::string plain = EncodeDictionary(content);
    const std::string packed = Pack(plain);
    TextHolder holder;
    auto plainTimes = TimesToLoad(content, plain, effort.starts, holder);
    const std::size_t allocationsBefore = AllocationCount();
    auto packedTimes = TimesToLoad(content, packed, effort.starts, holder);
    if (AllocationCount() == allocationsBefore)
        throw std::runtime_error("the allocations of loading are not counted");
    table.Inform("dictionary of 10,000 texts, six languages: size", Mebibytes(plain.size()));
    table.Check("dictionary: load, median", Milliseconds(Median(plainTimes)), Milliseconds(20ms));
    table.Inform("dictionary, compressed: load, median", Milliseconds(Median(packedTimes)));
    MeasureLookups(content, holder, table);
}

}
