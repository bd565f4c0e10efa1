#include "MatchReport.h"

#include <array>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Identity/GlyphMarkSupport.h"
#include "JsonText.h"
#include "Memory/CFVector.h"
#include "Utf8Text.h"
#include "XCFUtils.h"

namespace {

struct TestName {
  const char* json;
  const char* sentence;
};

// In the order of EBestMatchTest.
constexpr std::array<TestName, 10> kTestNames{{
    {"none", "no test tells the best from the next one"},
    {"activeState", "the best is active"},
    {"liveState", "the best is active by now"},
    {"requestedKind", "the best is of the kind asked for"},
    {"requestedFoundry", "the best is of the foundry asked for"},
    {"kindRanking", "the best is of the better kind"},
    {"adobeFoundry", "the best is Adobe's"},
    {"version", "the best has the better version"},
    {"temporary", "the best is only temporarily active"},
    {"vault", "the best lies in the vault"},
}};

const TestName& NameOf(EBestMatchTest test) {
  return kTestNames[static_cast<size_t>(test)];
}

struct Candidate {
  explicit Candidate(CFDictionaryRef font)
      : databaseID(FontRecord::GetDatabaseID(font)),
        postScriptName(ToStdString(FontRecord::GetPostScriptName(font))),
        kind(XCFUtils::GetStringFromDict(font, kGM_KindKey)),
        foundry(XCFUtils::GetStringFromDict(font, kGM_FoundryKey)),
        version(XCFUtils::GetStringFromDict(font, kGM_VersionKey)),
        library(XCFUtils::GetStringFromDict(font, kGM_WorkgroupNameKey)),
        isActive(XCFUtils::GetBoolFromDictString(font, kGM_IsActiveKey)) {}

  long long databaseID;
  std::string postScriptName;
  std::string kind;
  std::string foundry;
  std::string version;
  std::string library;
  bool isActive;
};

std::vector<Candidate> CandidatesOf(const Match& match) {
  std::vector<Candidate> candidates;
  for (const auto& font : ToVector<CFDictionaryRef>(match.candidates.get())) {
    candidates.emplace_back(font.get());
  }
  return candidates;
}

// The keys that a slug stores, in its order.
std::vector<CFStringRef> GlyphMarkKeys(CFDictionaryRef record) {
  std::vector<CFStringRef> keys;
  for (CFStringRef key : GlyphMarkSupport::kAllGlyphMarkCFKeys) {
    if (key && GlyphMarkSupport::IsSluggableKey(key) && CFDictionaryContainsKey(record, key)) {
      keys.push_back(key);
    }
  }
  return keys;
}

std::string CandidateLine(const Candidate& candidate) {
  std::string line =
      "  " + std::to_string(candidate.databaseID) + "  " + PrintableText(candidate.postScriptName);
  for (const std::string& detail :
       {candidate.kind, candidate.foundry, candidate.version, candidate.library}) {
    if (!detail.empty()) line += ", " + PrintableText(detail);
  }
  return line + (candidate.isActive ? ", active\n" : "\n");
}

std::string FoundText(const Match& match) {
  const bool byFamily = match.foundName.type == TypeOfFontName::kFamilyName;
  return std::string(byFamily ? "family name " : "PostScript name ") + PrintableText(match.foundName.text);
}

}  // namespace

std::string MatchAsText(const Match& match) {
  const std::vector<Candidate> candidates = CandidatesOf(match);
  std::string text =
      PrintableText(match.name) + ": " + std::to_string(candidates.size()) + " by the " + FoundText(match);
  text += candidates.size() > 1 ? std::string("; ") + NameOf(match.decidedBy).sentence + "\n" : "\n";
  for (const Candidate& candidate : candidates) text += CandidateLine(candidate);
  text += "  GlyphMark of the best:\n";
  for (CFStringRef key : GlyphMarkKeys(match.glyphMark.get())) {
    text += "      " + ToStdString(key) + ": " +
            PrintableText(XCFUtils::GetStringFromDict(match.glyphMark.get(), key)) + "\n";
  }
  if (match.excludedRemote) text += "  Fonts of the Google library, which is off, were left out.\n";
  return text;
}

std::string MatchAsJson(const Match& match) {
  const std::vector<Candidate> candidates = CandidatesOf(match);
  JsonText json;
  json.BeginObject();
  json.Key("name").String(match.name);
  json.Key("found").Boolean(!candidates.empty());
  if (!candidates.empty()) {
    json.Key("foundName").String(match.foundName.text);
    json.Key("foundAs").String(match.foundName.type == TypeOfFontName::kFamilyName ? "family"
                                                                                   : "postScriptName");
    json.Key("decidedBy").String(candidates.size() == 1 ? "onlyCandidate" : NameOf(match.decidedBy).json);
  }
  json.Key("candidates").BeginArray();
  for (const Candidate& candidate : candidates) {
    json.BeginObject();
    json.Key("databaseID").Integer(candidate.databaseID);
    json.Key("postScriptName").String(candidate.postScriptName);
    json.Key("kind").String(candidate.kind);
    json.Key("foundry").String(candidate.foundry);
    json.Key("version").String(candidate.version);
    json.Key("library").String(candidate.library);
    json.Key("active").Boolean(candidate.isActive);
    json.EndObject();
  }
  json.EndArray();
  if (match.glyphMark) {
    json.Key("glyphMark").BeginObject();
    for (CFStringRef key : GlyphMarkKeys(match.glyphMark.get())) {
      json.Key(ToStdString(key)).String(XCFUtils::GetStringFromDict(match.glyphMark.get(), key));
    }
    json.EndObject();
  }
  json.Key("excludedRemote").Boolean(match.excludedRemote);
  json.EndObject();
  return json.Text() + "\n";
}
