#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Base/FileWriter.h"
#include "Base/KeptFile.h"

namespace orvel {

// Small settings by key, each of one type. A key that is absent and one that holds another type
// read the same: as absent. Belongs to the main thread.
//
// By itself it lives in memory only, as tests want it; `FileUserDefaults` keeps it.
class UserDefaults {
 public:
  struct Data {
    std::string bytes;
    friend bool operator==(const Data&, const Data&) = default;
  };
  using List = std::vector<std::string>;
  using Value = std::variant<bool, double, std::string, List, Data>;
  using Values = std::map<std::string, Value, std::less<>>;

  UserDefaults() = default;
  virtual ~UserDefaults() = default;
  UserDefaults(const UserDefaults&) = delete;

  std::optional<bool> boolean(std::string_view key) const { return get<bool>(key); }
  std::optional<double> number(std::string_view key) const { return get<double>(key); }
  std::optional<std::string> text(std::string_view key) const { return get<std::string>(key); }
  std::optional<List> list(std::string_view key) const { return get<List>(key); }
  std::optional<std::string> data(std::string_view key) const;

  // Keys are made of ASCII letters, digits, "-" and ".". A number that isn't finite removes the
  // key; ill-formed UTF-8 in texts becomes U+FFFD, and in the file a text ends at its first NUL.
  void setBoolean(std::string_view key, bool value) { set(key, value); }
  void setNumber(std::string_view key, double value);
  void setText(std::string_view key, std::string_view value);
  void setList(std::string_view key, const List& value);
  void setData(std::string_view key, std::string bytes) { set(key, Data{std::move(bytes)}); }
  void remove(std::string_view key);

  const Values& values() const { return values_; }

 protected:
  // What was set in a former run; tells nobody.
  void restore(Values values) { values_ = std::move(values); }
  // A value was set to another, or removed.
  virtual void didChange() {}

 private:
  template <class T>
  std::optional<T> get(std::string_view key) const {
    const auto found = values_.find(key);
    const T* value = found == values_.end() ? nullptr : std::get_if<T>(&found->second);
    return value ? std::optional<T>(*value) : std::nullopt;
  }
  void set(std::string_view key, Value value);

  Values values_;
};

// The settings in one key file, a group a type, data as base64. Read once, when it is made;
// written, whole, with every change.
class FileUserDefaults final : public UserDefaults {
 public:
  // A missing file counts as empty. What is illegible in it is left out, and the file as it was is
  // kept beside it under the name "<name>.damaged.<extension>" before it is written again.
  FileUserDefaults(FileWriter& writer, const std::filesystem::path& file);

 private:
  void didChange() override;

  FileWriter& writer_;
  KeptFile file_;
};

}  // namespace orvel
