#pragma once

#include "platform/InputFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Cuts the text of a DXF file into lines and group pairs, one object at a time: everything from one group of
/// code 0 up to the next. Values are views into the read buffer, one byte a character, valid until the next
/// object is read.
///
/// It behaves as a text stream read line by line into a buffer of 512 characters: a line ends with CR LF or
/// LF and nothing else is trimmed; the last line may lack its end; a line of more than 511 characters puts
/// the stream into a state of failure in which nothing more is read. The file is read in large blocks; only
/// an object larger than a block makes the buffer grow.
class GroupReader {
public:
    enum class Status {
        OK,
        NO_NAME,  ///< no line where the object's name belongs
        NO_CODE,  ///< the stream failed where a group code belongs
        NO_VALUE, ///< no line where a value belongs
        BAD_CODE, ///< a group code above the largest: see Code
        IO_ERROR, ///< the stream failed after a whole object
    };
    static constexpr std::size_t MAX_LINE = 511;

    bool Open(const std::wstring& fileName);
    void Close();
    /// Closes the file and frees the buffer; the counts of lines and line ends stay.
    void Finish();
    bool IsOpen() const { return m_File.IsOpen(); }
    std::uint64_t FileSize() const { return m_File.Size(); }
    /// Bytes of the file that were taken into the buffer.
    std::uint64_t BytesRead() const { return m_File.Tell(); }

    /// One line without its end; empty at the end of the data.
    std::string_view ReadLine();
    /// True once the data ended within or right after the last line, and when a read found nothing or failed.
    bool AtEnd() const { return m_Eof; }
    bool Failed() const { return m_Fail; }
    /// True when the failure was a line that is too long.
    bool LineTooLong() const { return m_LongLine != 0; }
    /// Number of that line; 0 for none.
    int LongLine() const { return m_LongLine; }
    /// Number of lines asked for so far, the one that was not there included.
    int Line() const;
    void SetLine(int line) { m_Line = line; }
    std::uint64_t NumLineEnds() const { return m_NumLineEnds; }
    std::uint64_t NumCrLf() const { return m_NumCrLf; }

    /// Reads the object whose name is the next line. Where the data end at a place for a code, the object is
    /// whole. In a lightweight polyline the list of code 42 gets one bulge for each vertex, "0" where the
    /// file has none.
    Status ReadObject(int maxCode);
    /// The code that was refused.
    int Code() const { return m_Code; }

    std::string_view Name() const { return {m_Object, m_NameLength}; }
    /// Groups of the object in file order.
    std::size_t NumGroups() const { return m_Groups.size(); }
    int CodeAt(std::size_t index) const { return m_Groups[index].code; }
    std::string_view ValueAt(std::size_t index) const
    {
        const Group& group = m_Groups[index];
        return group.offset == NO_BULGE ? std::string_view("0")
                                        : std::string_view(m_Object + group.offset, group.length);
    }
    bool Has(int code) const { return IndexOf(code) != NONE; }
    /// The code occurs, and its first group comes before the first one of another code, which need not occur.
    bool HasBefore(int code, int other) const { return IndexOf(code) < IndexOf(other); }
    /// First value of a code from 0 to 1071; empty when there is none.
    std::string_view First(int code) const
    {
        const std::size_t index = IndexOf(code);
        return index == NONE ? std::string_view() : ValueAt(index);
    }
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);
    /// Place of the first group of a code, or NONE; and of the next one after a place.
    std::size_t IndexOf(int code) const
    {
        const Mark& mark = m_Marks[static_cast<std::size_t>(code)];
        return mark.object == m_ObjectNumber ? mark.index : NONE;
    }
    std::size_t NextIndexOf(int code, std::size_t after) const
    {
        for (std::size_t i = after + 1; i < m_Groups.size(); ++i)
            if (m_Groups[i].code == code) return i;
        return NONE;
    }

private:
    struct Group {
        std::size_t offset; ///< from the start of the object
        std::uint32_t length;
        int code;
    };
    struct Mark {
        std::uint32_t object = 0; ///< number of the object in which the code was last seen
        std::uint32_t index = 0;
    };
    static constexpr std::size_t NO_BULGE = static_cast<std::size_t>(-1);
    static constexpr std::size_t BLOCK = std::size_t{1} << 18;
    static constexpr std::size_t LINE_ROOM =
        1024; ///< bytes at hand before a line is read, unless the file has ended
    static constexpr std::size_t PADDING = 64; ///< readable bytes behind the data
    static constexpr std::size_t NUM_MARKS = 1072;

    void Refill();
    void GrowOrCompact();
    void StartObject();
    bool ReadCode(int& code);
    void Store(int code, std::string_view value);
    void StoreBulge();
    std::string_view FailLine(const char* line);

    InputFile m_File;
    std::unique_ptr<char[]> m_Buffer;
    std::size_t m_Capacity = 0;
    char* m_Next = nullptr;   ///< next byte to cut
    char* m_End = nullptr;    ///< end of the data in the buffer
    char* m_Object = nullptr; ///< first byte of the current object: its name
    bool m_FileEnded = true;
    bool m_Eof = false;
    bool m_Fail = false;
    int m_LongLine = 0;
    std::int64_t m_Line = 0;
    std::uint64_t m_NumLineEnds = 0;
    std::uint64_t m_NumCrLf = 0;

    std::size_t m_NameLength = 0;
    int m_Code = 0;
    std::vector<Group> m_Groups;
    std::array<Mark, NUM_MARKS> m_Marks{};
    std::uint32_t m_ObjectNumber = 0;
    std::size_t m_PendingBulgeOffset = NO_BULGE;
    std::uint32_t m_PendingBulgeLength = 0;
};
