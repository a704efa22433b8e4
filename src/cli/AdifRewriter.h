#pragma once

#include "LocateCommand.h"

#include <array>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

// veltor-locate --adif: copies an ADIF log (.adi) byte for byte, each record gaining the location
// fields it lacks just before its <EOR>. A field present but empty is lacking too, and is filled
// where it stands, so that a reader taking the first of a name finds the value. A second run
// over its own output changes nothing. The log goes through in pieces, so memory holds the
// record being read and no more.
class AdifRewriter
{
public:
    explicit AdifRewriter(const LocateCommand::Options &options);

    // The next piece of the log, cut anywhere: appends the records it completes to out and an
    // error line for each bad one to errors.
    void feed(std::string_view data, std::string &out, std::string &errors);
    // The end of the log: appends what is left, as it is.
    void finish(std::string &out, std::string &errors);
    bool hadErrors() const { return m_hadErrors; }

    // The whole log from input to output; returns LocateCommand's exit status.
    int run(std::FILE *input, std::FILE *output, std::FILE *errors);

private:
    // The fields a record may gain, in the order they are added.
    enum Known
    {
        Grid,
        Lat,
        Lon,
        MyGrid,
        MyLat,
        MyLon,
        Distance,
        KnownCount
    };
    enum class State
    {
        Start,
        Header,
        Records,
        CopyingRest
    };
    // A field's data, from the start of its record.
    struct Span
    {
        std::size_t start = 0;
        std::size_t length = 0;
    };

    void read(std::string &out, std::string &errors, bool atEnd);
    void readHeader(std::string &out, bool atEnd);
    void readRecords(std::string &out, std::string &errors, bool atEnd);
    void endRecord(std::size_t eor, std::size_t end, std::string &out, std::string &errors);
    // Fills the fields one station lacks; its point when known. A bad field sets problem.
    std::optional<Coordinate> completeStation(Known grid, std::string &problem);
    void add(Known field, std::string_view data);
    std::string_view value(Known field) const;
    void startRecord(std::size_t start);
    void report(std::string &errors, long long record, std::string_view text);
    void copyRest(std::string &out, std::string &errors, std::string_view problem);

    VeltorFormat m_chars;
    std::optional<Coordinate> m_from;
    bool m_contest;

    State m_state = State::Start;
    // From the start of the record being read (m_start) to the end of the input so far.
    std::string m_buffer;
    std::size_t m_start = 0;
    std::size_t m_position = 0;
    std::array<std::optional<Span>, KnownCount> m_known;
    // The whole tag of a known field that is there but empty, the place its value goes.
    std::array<std::optional<Span>, KnownCount> m_empty;
    bool m_recordHasFields = false;
    // The data each field gains, kept across records so that none allocates.
    std::array<std::string, KnownCount> m_additions;
    std::array<bool, KnownCount> m_added{};
    long long m_records = 0;
    bool m_hadErrors = false;
};
