// Standard output behind std::cout, which remembers why a write failed.
#pragma once

#include <streambuf>
#include <vector>

namespace qvlink {

// Takes the place of std::cout's buffer as long as it lives.
class StandardOutput : public std::streambuf {
public:
    StandardOutput();
    ~StandardOutput() override;
    StandardOutput(StandardOutput const &) = delete;
    StandardOutput &operator=(StandardOutput const &) = delete;

    // Writes what is left. The errno of the first write that failed, 0 if all was written.
    int Finish();

protected:
    int_type overflow(int_type character) override;
    int sync() override;

private:
    std::vector<char> m_buffer;
    std::streambuf *m_replaced;
    int m_error = 0;
};

} // namespace qvlink
