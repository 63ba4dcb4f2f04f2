#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace Util {

// The host's narrow text. Copies share one block and cost a counter, so operations take it by value. Characters are
// UTF-8 and never looked into. The text is always followed by a NUL; a NUL inside it is kept, and ends it for whoever
// reads c_str(). A block may be shared by threads; one TString object may not.
class TString {
 public:
  TString() noexcept = default;
  TString(std::string_view text) : block_(text.empty() ? nullptr : Allocate(text.size())) {
    if (block_ != nullptr) std::memcpy(Characters(block_), text.data(), text.size());
  }
  TString(const char* text) : TString(std::string_view(text)) {}

  TString(const TString& other) noexcept : block_(other.block_) {
    if (block_ != nullptr) block_->owners.fetch_add(1, std::memory_order_relaxed);
  }
  TString(TString&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  TString& operator=(const TString& other) noexcept {
    TString copy(other);
    std::swap(block_, copy.block_);
    return *this;
  }
  TString& operator=(TString&& other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~TString() { Release(); }

  const char* c_str() const noexcept { return block_ != nullptr ? Characters(block_) : ""; }
  std::size_t size() const noexcept { return block_ != nullptr ? block_->size : 0; }
  bool empty() const noexcept { return size() == 0; }
  std::string_view view() const noexcept { return {c_str(), size()}; }

  // The text as size() + 1 writable characters, shared with nobody, the NUL included. It stays valid until this object
  // is next changed. Whoever writes into it calls ReleaseBuffer() afterwards.
  char* GetBuffer() {
    if (block_ == nullptr || block_->owners.load(std::memory_order_acquire) != 1) {
      TString own;
      own.block_ = Allocate(size());
      std::memcpy(Characters(own.block_), c_str(), size());
      std::swap(block_, own.block_);
    }
    return Characters(block_);
  }

  // Takes the text's length anew after its buffer was written: up to the first NUL, never more than it was.
  void ReleaseBuffer() noexcept {
    if (block_ != nullptr) block_->size = std::strlen(Characters(block_));
  }

  friend bool operator==(const TString& left, const TString& right) noexcept { return left.view() == right.view(); }

 private:
  struct Block {
    std::atomic<std::size_t> owners;
    std::size_t size;
  };

  static Block* Allocate(std::size_t size) {
    auto* block = ::new (::operator new(sizeof(Block) + size + 1)) Block{1, size};
    Characters(block)[size] = '\0';
    return block;
  }

  static char* Characters(Block* block) noexcept { return reinterpret_cast<char*>(block + 1); }

  void Release() noexcept {
    if (block_ == nullptr || !IsLastOwner()) return;
    block_->~Block();
    ::operator delete(block_);
  }

  // Whether this object gave up the block last. An only owner need not lock the counter: nobody else could copy it.
  bool IsLastOwner() noexcept {
    return block_->owners.load(std::memory_order_acquire) == 1 ||
           block_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1;
  }

  Block* block_ = nullptr;
};

}  // namespace Util
