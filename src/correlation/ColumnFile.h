#pragma once
// Scratch space for tables too large to keep in memory at full sample size: a
// working file in the temporary directory, removed from the directory as soon
// as it is open, so that nothing is left behind even by a crash. Where no file
// can be made the bytes are kept in memory instead, with the same results.
#include <cstdint>
#include <vector>

namespace tarvex {

class ColumnFile {
public:
    ColumnFile();
    ~ColumnFile();
    ColumnFile(const ColumnFile&) = delete;
    ColumnFile& operator=(const ColumnFile&) = delete;

    // Bytes at `offset`; the file grows as needed. false on an I/O failure.
    [[nodiscard]] bool write(int64_t offset, const void* data, int64_t bytes);
    // Reading past what was written gives zeros.
    [[nodiscard]] bool read(int64_t offset, void* data, int64_t bytes) const;
    bool onDisk() const { return fd_ >= 0; }

private:
    int fd_ = -1;
    std::vector<char> memory_;
};

}  // namespace tarvex
