// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fuzz/mutator.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace veltro::fuzz {
namespace {

constexpr std::size_t largestFile = std::size_t{1} << 20;

// Where parsers of sizes and counts go wrong.
constexpr std::array<std::uint32_t, 18> edges{
    0,      1,      2,      7,          8,          0x7f,       0x80,       0xff,       0x100,
    0x7fff, 0x8000, 0xffff, 0x01000000, 0x7ffffff0, 0x7fffffff, 0x80000000, 0xfffffff0, 0xffffffff,
};

// What containers call their parts, four letters each.
constexpr std::string_view tags =
    "moov mdat trak mdia minf stbl stsd stts ctts stsc stsz stco co64 stss elst edts mvhd tkhd "
    "mdhd hdlr dref url  alis moof traf tfhd tfdt trun sidx mfra mvex trex udta meta ilst covr "
    "chpl free avc1 hvc1 vp09 av01 mp4a esds avcC hvcC pasp colr RIFF LIST idx1 OggS fLaC "
    "ID3\x03 FLV\x01 \x1a\x45\xdf\xa3 ";

// The head of a file says what the rest is.
std::size_t placeIn(const Bytes &file, Chance &chance)
{
    constexpr std::size_t head = 2048;
    return chance.oneIn(3) ? chance.below(file.size()) : chance.below(std::min(file.size(), head));
}

void writeNumber(Bytes &file, Chance &chance)
{
    const std::size_t place = placeIn(file, chance);
    const std::uint32_t number = edges[chance.below(edges.size())];
    const std::size_t width = std::size_t{1} << chance.below(3);
    const bool isLowestFirst = chance.oneIn(3);
    for (std::size_t i = 0; i < width && place + i < file.size(); ++i) {
        const std::size_t shift = 8 * (isLowestFirst ? i : width - 1 - i);
        file[place + i] = static_cast<std::uint8_t>(number >> shift);
    }
}

void writeTag(Bytes &file, Chance &chance)
{
    constexpr std::size_t letters = 4;
    const std::string_view tag =
        tags.substr(chance.below(tags.size() / (letters + 1)) * (letters + 1), letters);
    const std::size_t place = placeIn(file, chance);
    for (std::size_t i = 0; i < tag.size() && place + i < file.size(); ++i) {
        file[place + i] = static_cast<std::uint8_t>(tag[i]);
    }
}

struct Piece {
    std::size_t begin;
    std::size_t end;
};

Piece pieceOf(const Bytes &file, Chance &chance)
{
    const std::size_t begin = placeIn(file, chance);
    const std::size_t longest = std::size_t{1} << chance.below(14);
    return {begin, std::min(file.size(), begin + 1 + chance.below(longest))};
}

void insertPiece(Bytes &file, const Bytes &from, Chance &chance)
{
    if (from.empty()) {
        return;
    }
    const Piece piece = pieceOf(from, chance);
    const auto at = [](const Bytes &bytes, std::size_t place) {
        return bytes.begin() + static_cast<std::ptrdiff_t>(place);
    };
    const Bytes copy(at(from, piece.begin), at(from, piece.end)); // may be of the same file
    const auto place = static_cast<std::ptrdiff_t>(placeIn(file, chance));
    if (chance.oneIn(2)) {
        file.insert(file.begin() + place, copy.begin(), copy.end());
    } else {
        const std::size_t room = file.size() - static_cast<std::size_t>(place);
        std::copy_n(copy.begin(), std::min(copy.size(), room), file.begin() + place);
    }
}

void removePiece(Bytes &file, Chance &chance)
{
    const Piece piece = pieceOf(file, chance);
    file.erase(file.begin() + static_cast<std::ptrdiff_t>(piece.begin),
               file.begin() + static_cast<std::ptrdiff_t>(piece.end));
}

void change(Bytes &file, const Bytes &other, Chance &chance)
{
    switch (chance.below(10)) {
    case 0:
    case 1:
    case 2:
        file[placeIn(file, chance)] ^= static_cast<std::uint8_t>(1U << chance.below(8));
        return;
    case 3:
        file[placeIn(file, chance)] = static_cast<std::uint8_t>(chance.number());
        return;
    case 4:
    case 5:
        writeNumber(file, chance);
        return;
    case 6:
        writeTag(file, chance);
        return;
    case 7:
        insertPiece(file, chance.oneIn(2) ? other : file, chance);
        return;
    case 8:
        removePiece(file, chance);
        return;
    default:
        if (chance.oneIn(4)) {
            file.resize(1 + chance.below(file.size()));
        }
        return;
    }
}

void changeLetters(std::string &word, Chance &chance)
{
    constexpr std::string_view letters = "0123456789:+-.?=,|'\\[]()%@;#!abcsv \n\xff";
    const std::size_t place = chance.below(word.size() + 1);
    const char letter = letters[chance.below(letters.size())];
    if (place == word.size() || chance.oneIn(2)) {
        word.insert(place, 1, letter);
    } else if (chance.oneIn(2)) {
        word[place] = letter;
    } else {
        word.erase(place, 1 + chance.below(4));
    }
}

void change(Words &command, const Words &pool, Chance &chance)
{
    const std::size_t place = chance.below(command.size());
    const auto at = command.begin() + static_cast<std::ptrdiff_t>(place);
    switch (chance.below(6)) {
    case 0:
        command.erase(at);
        return;
    case 1:
        command.insert(at, command[chance.below(command.size())]);
        return;
    case 2:
        std::swap(command[place], command[chance.below(command.size())]);
        return;
    case 3:
        command[place] = pool[chance.below(pool.size())];
        return;
    case 4:
        command.insert(at, pool[chance.below(pool.size())]);
        return;
    default:
        changeLetters(command[place], chance);
        return;
    }
}

}

// A step of splitmix, which needs no warming up.
std::uint64_t Chance::number()
{
    m_state += 0x9e3779b97f4a7c15;
    std::uint64_t mixed = m_state;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
    return mixed ^ (mixed >> 31);
}

std::size_t Chance::below(std::size_t limit)
{
    return static_cast<std::size_t>(number() % limit);
}

void mutate(Bytes &file, const Bytes &other, Chance &chance)
{
    const std::size_t changes = std::size_t{1} << chance.below(6);
    for (std::size_t i = 0; i < changes && !file.empty(); ++i) {
        change(file, other, chance);
    }
    file.resize(std::min(file.size(), largestFile));
}

void mutate(Words &command, const Words &pool, Chance &chance)
{
    const std::size_t changes = 1 + chance.below(2);
    for (std::size_t i = 0; i < changes && !command.empty(); ++i) {
        change(command, pool, chance);
    }
}

}
