#include <testkit/Board.hpp>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

namespace mox::testkit {
namespace {

constexpr const char* plainBoard = R"({"name": "plain", "nodes": [{"id": "0x1011", "name": "only",
  "unit": {"id": "KORA", "hwSwId": "0x00500000", "serialNumber": "K0000000001"}}]})";

std::map<std::string, Board>& boards() {
    static std::map<std::string, Board> bySuite;
    return bySuite;
}

} // namespace

Board Board::named(const std::string& name) {
    const char* directory = std::getenv("MOX_BOARDS");
    return file(std::string(directory != nullptr ? directory : MOX_SHIPPED_BOARDS) + "/" + name + ".json");
}

Board Board::file(std::string path) {
    Board board;
    board.m_path = std::move(path);
    return board;
}

Board Board::text(std::string json) {
    Board board;
    board.m_text = std::move(json);
    return board;
}

Board Board::plain() {
    return text(plainBoard);
}

Board Board::at(std::uint16_t node) const {
    Board board = *this;
    board.m_node = node;
    return board;
}

bool Board::read(std::string& json, std::string& name) const {
    json = m_text;
    name = m_path.empty() ? "board description of the test" : m_path;
    if (m_path.empty())
        return true;
    std::ifstream file(m_path, std::ios::binary);
    json.assign(std::istreambuf_iterator<char>(file), {});
    return file.good() && !json.empty();
}

BoardOf::BoardOf(const char* suite, Board board) {
    boards().insert_or_assign(suite, std::move(board));
}

Board BoardOf::find(const std::string& suite) {
    const auto found = boards().find(suite);
    return found == boards().end() ? Board::plain() : found->second;
}

std::vector<std::string> BoardOf::suites() {
    std::vector<std::string> names;
    for (const auto& [suite, board] : boards())
        names.push_back(suite);
    return names;
}

} // namespace mox::testkit
