// A property-list round trip of 10,000 font records. "parser_ratio" says how many times longer it takes than
// the XML parser alone needs for the same text.
//
// Links: hornbeam_platform pugixml::pugixml
#include <CoreFoundation/CoreFoundation.h>
#include <benchmark/benchmark.h>

#include <chrono>
#include <pugixml.hpp>
#include <string>

#include "Memory/CFVector.h"
#include "Memory/RetainPtr.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRecords = 10000;

void Put(CFMutableDictionaryRef record, CFStringRef key, const std::string& value) {
  CFDictionarySetValue(record, key, ToCFString(value).get());
}

RetainPtr<CFMutableArrayRef> MakeRecords() {
  RetainPtr<CFMutableArrayRef> records = adoptCF(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  for (int i = 0; i < kRecords; ++i) {
    const RetainPtr<CFMutableDictionaryRef> record = adoptCF(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    Put(record.get(), CFSTR("PostScriptName"), "Family" + std::to_string(i) + "-Bold");
    Put(record.get(), CFSTR("Family"), "Family & Söhne " + std::to_string(i));
    Put(record.get(), CFSTR("FontKind"), "OpenType");
    Put(record.get(), CFSTR("Foundry"), "Acme <Type>");
    Put(record.get(), CFSTR("Version"), "1.00" + std::to_string(i % 10));
    Put(record.get(), CFSTR("GlyphMark_1.2_Checksum"), std::to_string(1000003L * i));
    CFArrayAppendValue(records.get(), record.get());
  }
  return records;
}

RetainPtr<CFDataRef> Write(CFTypeRef list) {
  return adoptCF(CFPropertyListCreateData(nullptr, list, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
}

RetainPtr<CFTypeRef> Read(CFDataRef text) {
  return adoptCF(CFPropertyListCreateWithData(nullptr, text, kCFPropertyListImmutable, nullptr, nullptr));
}

double SecondsOfParserAlone(CFDataRef text, int rounds) {
  const Clock::time_point start = Clock::now();
  for (int i = 0; i < rounds; ++i) {
    pugi::xml_document document;
    benchmark::DoNotOptimize(
        document.load_buffer(CFDataGetBytePtr(text), static_cast<size_t>(CFDataGetLength(text))));
  }
  return std::chrono::duration<double>(Clock::now() - start).count() / rounds;
}

void PropertyListRoundTrip(benchmark::State& state) {
  const RetainPtr<CFMutableArrayRef> records = MakeRecords();
  const RetainPtr<CFDataRef> sample = Write(records.get());
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    const RetainPtr<CFDataRef> text = Write(records.get());
    const RetainPtr<CFTypeRef> back = Read(text.get());
    if (!back || CFArrayGetCount(static_cast<CFArrayRef>(back.get())) != kRecords) {
      state.SkipWithError("the list didn't come back");
    }
  }
  const double seconds =
      std::chrono::duration<double>(Clock::now() - start).count() / static_cast<double>(state.iterations());
  state.counters["parser_ratio"] = seconds / SecondsOfParserAlone(sample.get(), 10);
  state.SetBytesProcessed(state.iterations() * CFDataGetLength(sample.get()));
}
BENCHMARK(PropertyListRoundTrip)->Unit(benchmark::kMillisecond);

}  // namespace
