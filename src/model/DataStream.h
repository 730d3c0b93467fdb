#pragma once
// A results file held open for one operation, closed when it goes out of scope.
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

namespace tarvex {

class DataStream {
public:
    DataStream(const std::string& path, const char* mode)
        : file_(path.empty() ? nullptr : std::fopen(path.c_str(), mode)) {
        if (file_) std::setvbuf(file_, nullptr, _IOFBF, 1 << 16);
    }
    ~DataStream() { (void)close(); }
    DataStream(const DataStream&) = delete;
    DataStream& operator=(const DataStream&) = delete;

    explicit operator bool() const { return file_ != nullptr; }
    [[nodiscard]] bool write(const double* values, std::size_t n) { return n == 0 || writeBytes(values, n * sizeof(double)); }
    [[nodiscard]] bool read(double* values, std::size_t n) {
        return n == 0 || (file_ && std::fread(values, sizeof(double), n, file_) == n);
    }
    [[nodiscard]] bool writeBytes(const void* data, std::size_t bytes) {
        return bytes == 0 || (file_ && std::fwrite(data, 1, bytes, file_) == bytes);
    }
    std::size_t readBytes(void* data, std::size_t bytes) { return file_ ? std::fread(data, 1, bytes, file_) : 0; }
    [[nodiscard]] bool seek(int64_t offset) { return file_ && fseeko(file_, static_cast<off_t>(offset), SEEK_SET) == 0; }
    // Closes the file; false when it was not open or buffered data could not be written.
    [[nodiscard]] bool close() {
        if (!file_) return false;
        std::FILE* closing = std::exchange(file_, nullptr);
        return std::fclose(closing) == 0;
    }

private:
    std::FILE* file_;
};

} // namespace tarvex
