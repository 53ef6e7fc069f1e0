#pragma once

#include <concepts>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "Base/Observable.h"

namespace orvel {

namespace JSONCoding {
class Encoder;
class Value;
}  // namespace JSONCoding

class AnySetting;

// The stored form of a group of settings: one JSON document with a member for each.
class SettingsSnapshot {
 public:
  // `store` runs after each write of a setting.
  explicit SettingsSnapshot(std::function<void()> store) : store_(std::move(store)) {}
  SettingsSnapshot(const SettingsSnapshot&) = delete;

  // Never fails: a setting whose member is missing or damaged keeps its default.
  void decode(std::string_view data);
  [[nodiscard]] std::string encoded() const;

 private:
  friend AnySetting;

  std::map<std::string_view, AnySetting*> settings_;  // by key
  std::function<void()> store_;
};

// A setting as its document knows it.
class AnySetting {
 public:
  AnySetting(const AnySetting&) = delete;

 protected:
  AnySetting(SettingsSnapshot& snapshot, std::string_view key) : snapshot_(snapshot) {
    snapshot.settings_.emplace(key, this);
  }
  ~AnySetting() = default;
  void store() { snapshot_.store_(); }

 private:
  friend SettingsSnapshot;
  // Leaves the setting as it is unless the whole of the value is sound.
  virtual void read(JSONCoding::Value value) = 0;
  virtual void write(std::string_view key, JSONCoding::Encoder& encoder) const = 0;

  SettingsSnapshot& snapshot_;
};

struct SettingDetails {
  // The default is left out of the document: who never touched the setting gets a later version's.
  bool leavesOutDefault = false;
  // Runs ahead of the storing of a value that differs from the former; may be empty.
  std::function<void()> changed;
};

// An observable value that is stored each time it is written. Its type is one of those that
// SettingsSnapshot.cpp knows how to read and write.
template <class T>
class Setting final : private Observable<T>, private AnySetting {
 public:
  Setting(SettingsSnapshot& snapshot, std::string_view key, T initial, SettingDetails details = {})
      : Observable<T>(initial),
        AnySetting(snapshot, key),
        initial_(std::move(initial)),
        details_(std::move(details)) {}

  using Observable<T>::get;
  using Observable<T>::peek;
  using Observable<T>::operator const T&;
  using Observable<T>::operator*;
  using Observable<T>::operator->;

  bool set(T next) {
    const bool isChanged = Observable<T>::set(std::move(next));
    if (isChanged && details_.changed) details_.changed();
    store();
    return isChanged;
  }
  Setting& operator=(T next) {
    set(std::move(next));
    return *this;
  }
  template <std::invocable<T&> Change>
  bool update(Change&& change) {
    T next = peek();
    std::forward<Change>(change)(next);
    return set(std::move(next));
  }
  // Sets the value as a part of another setting's change, which stores it.
  void follow(T next) { Observable<T>::set(std::move(next)); }

 private:
  void read(JSONCoding::Value value) override;
  void write(std::string_view key, JSONCoding::Encoder& encoder) const override;

  const T initial_;
  const SettingDetails details_;
};

}  // namespace orvel
