#include "Support/Stores/UserDefaults.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "Base/Assert.h"
#include "Base/GRef.h"
#include "Base/Log.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

using Values = UserDefaults::Values;
using Value = UserDefaults::Value;
using List = UserDefaults::List;
using Data = UserDefaults::Data;

constexpr uint64_t kMaxFile = 16u << 20;

struct KeyFileFree {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileFree>;

struct StringsFree {
  void operator()(gchar** strings) const { g_strfreev(strings); }
};
using Strings = std::unique_ptr<gchar*, StringsFree>;

bool isKey(std::string_view key) {
  return !key.empty() && std::all_of(key.begin(), key.end(), [](char c) {
    return g_ascii_isalnum(c) || c == '-' || c == '.';
  });
}

// A group of the key file: the values of one type.
struct Group {
  const char* name;
  std::optional<Value> (*read)(GKeyFile* file, const char* group, const char* key);
  void (*write)(GKeyFile* file, const char* group, const char* key, const Value& value);
};

std::optional<Value> readBoolean(GKeyFile* file, const char* group, const char* key) {
  GError* error = nullptr;
  const bool value = g_key_file_get_boolean(file, group, key, &error);
  return GErrorRef(error) ? std::nullopt : std::optional<Value>(value);
}

std::optional<Value> readNumber(GKeyFile* file, const char* group, const char* key) {
  GError* error = nullptr;
  const double value = g_key_file_get_double(file, group, key, &error);
  return GErrorRef(error) || !std::isfinite(value) ? std::nullopt : std::optional<Value>(value);
}

std::optional<Value> readText(GKeyFile* file, const char* group, const char* key) {
  const GText value(g_key_file_get_string(file, group, key, nullptr));
  return value ? std::optional<Value>(std::string(value.get())) : std::nullopt;
}

std::optional<Value> readList(GKeyFile* file, const char* group, const char* key) {
  gsize count = 0;
  const Strings items(g_key_file_get_string_list(file, group, key, &count, nullptr));
  if (!items) return std::nullopt;
  return List(items.get(), items.get() + count);
}

std::optional<Value> readData(GKeyFile* file, const char* group, const char* key) {
  const GText text(g_key_file_get_value(file, group, key, nullptr));
  if (!text) return std::nullopt;
  gsize size = 0;
  const GText bytes(reinterpret_cast<char*>(g_base64_decode(text.get(), &size)));
  return Data{std::string(bytes.get(), size)};
}

void writeBoolean(GKeyFile* file, const char* group, const char* key, const Value& value) {
  g_key_file_set_boolean(file, group, key, std::get<bool>(value));
}

void writeNumber(GKeyFile* file, const char* group, const char* key, const Value& value) {
  g_key_file_set_double(file, group, key, std::get<double>(value));
}

void writeText(GKeyFile* file, const char* group, const char* key, const Value& value) {
  g_key_file_set_string(file, group, key, std::get<std::string>(value).c_str());
}

void writeList(GKeyFile* file, const char* group, const char* key, const Value& value) {
  std::vector<const char*> items;
  for (const std::string& item : std::get<List>(value)) items.push_back(item.c_str());
  g_key_file_set_string_list(file, group, key, items.data(), items.size());
}

void writeData(GKeyFile* file, const char* group, const char* key, const Value& value) {
  const std::string& bytes = std::get<Data>(value).bytes;
  const GText text(g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
  g_key_file_set_value(file, group, key, text.get());
}

// In the order of the alternatives of `Value`.
constexpr Group kGroups[] = {{"Booleans", readBoolean, writeBoolean},
                             {"Numbers", readNumber, writeNumber},
                             {"Texts", readText, writeText},
                             {"Lists", readList, writeList},
                             {"Data", readData, writeData}};
static_assert(std::size(kGroups) == std::variant_size_v<Value>);

// Null for what is no key file.
KeyFile loaded(const std::string& bytes) {
  KeyFile file(g_key_file_new());
  if (!g_key_file_load_from_data(file.get(), bytes.data(), bytes.size(), G_KEY_FILE_NONE, nullptr))
    file.reset();
  return file;
}

// The lines that a key file can hold. Those below an illegible heading go with it: nobody knows
// their type.
std::string legibleLines(std::string_view bytes) {
  std::string kept;
  bool isInGroup = false;
  for (const std::string_view part : text::splitNonEmpty(bytes, '\n')) {
    const std::string line = std::string(part) + "\n";
    const bool isLegible = line.find('\0') == std::string::npos && loaded("[Group]\n" + line);
    if (line.starts_with('[')) isInGroup = isLegible;
    if (isLegible && isInGroup) kept += line;
  }
  return kept;
}

struct Decoded {
  Values values;
  bool isWhole = true;  // nothing was left out
};

Decoded decoded(const std::string& bytes) {
  Decoded result;
  // The library takes a line for ended by a NUL.
  KeyFile file = bytes.find('\0') == std::string::npos ? loaded(bytes) : nullptr;
  if (!file) {
    result.isWhole = false;
    file = loaded(legibleLines(bytes));
  }
  if (!file) return result;
  gsize groups = 0;
  const Strings names(g_key_file_get_groups(file.get(), &groups));
  for (const Group& group : kGroups) {
    if (g_key_file_has_group(file.get(), group.name)) --groups;
    const Strings keys(g_key_file_get_keys(file.get(), group.name, nullptr, nullptr));
    for (gchar** key = keys.get(); key && *key; ++key) {
      auto value = isKey(*key) ? group.read(file.get(), group.name, *key) : std::nullopt;
      if (value)
        result.values.insert_or_assign(*key, std::move(*value));
      else
        result.isWhole = false;
    }
  }
  if (groups > 0) result.isWhole = false;
  return result;
}

std::string encoded(const Values& values) {
  const KeyFile file(g_key_file_new());
  for (const auto& [key, value] : values) {
    const Group& group = kGroups[value.index()];
    group.write(file.get(), group.name, key.c_str(), value);
  }
  gsize size = 0;
  const GText text(g_key_file_to_data(file.get(), &size, nullptr));
  return std::string(text.get(), size);
}

}  // namespace

std::optional<std::string> UserDefaults::data(std::string_view key) const {
  auto value = get<Data>(key);
  return value ? std::optional(std::move(value->bytes)) : std::nullopt;
}

void UserDefaults::setNumber(std::string_view key, double value) {
  if (std::isfinite(value)) return set(key, value);
  remove(key);
}

void UserDefaults::setText(std::string_view key, std::string_view value) {
  set(key, text::repairedUTF8(value));
}

void UserDefaults::setList(std::string_view key, const List& value) {
  List repaired;
  for (const std::string& item : value) repaired.push_back(text::repairedUTF8(item));
  set(key, std::move(repaired));
}

void UserDefaults::remove(std::string_view key) {
  const auto found = values_.find(key);
  if (found == values_.end()) return;
  values_.erase(found);
  didChange();
}

void UserDefaults::set(std::string_view key, Value value) {
  require(isKey(key), "a key of the settings has characters that its file cannot hold");
  const auto found = values_.find(key);
  if (found != values_.end() && found->second == value) return;
  values_.insert_or_assign(std::string(key), std::move(value));
  didChange();
}

FileUserDefaults::FileUserDefaults(FileWriter& writer, const std::filesystem::path& file)
    : writer_(writer), file_(writer, file) {
  std::filesystem::path kept = file;
  kept.replace_filename(file.stem().string() + ".damaged" + file.extension().string());
  const auto tell = [&](const std::string& what) {
    Log::app.error("Couldn't read {} settings (kept as {})", what, kept.filename().string());
  };
  auto contents = writer.files().read(file, kMaxFile);
  if (!contents) {
    if (isMissing(contents.error())) return;
    tell("the");
    file_.moveAside(kept);
    return;
  }
  auto result = decoded(*contents);
  restore(std::move(result.values));
  if (result.isWhole) return;
  tell("some of the");
  file_.keepCopy(kept, *std::move(contents));
}

void FileUserDefaults::didChange() {
  writer_.carryOut(file_.replacing([copy = values()] { return encoded(copy); },
                                   [](const WriteResult& result) {
                                     if (!result)
                                       Log::app.error("Couldn't save the settings: {}",
                                                      result.error().message());
                                   }));
}

}  // namespace orvel
