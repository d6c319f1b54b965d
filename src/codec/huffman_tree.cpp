// SPDX-License-Identifier: MIT
#include "codec/huffman_tree.h"

#include <cstdlib>
#include <iterator>

#include "diag/debug.h"

namespace quarnel::codec {
namespace {

using NodeList = std::vector<std::unique_ptr<HuffmanNode>>;

// Descending probability; equal probabilities compare equal.
int CompareDescending(const void* a, const void* b) {
    const double pa = static_cast<const SymbolProbability*>(a)->probability;
    const double pb = static_cast<const SymbolProbability*>(b)->probability;
    if (pb > pa) return 1;
    if (pa > pb) return -1;
    return 0;
}

void PrintTable(const char* title, const std::vector<SymbolProbability>& pairs) {
    DebugPrint("%s", title);
    for (std::size_t i = 0; i < pairs.size(); ++i)
        DebugPrint("[%d] %d:%f\n", static_cast<int>(i), static_cast<int>(pairs[i].symbol), pairs[i].probability);
    DebugPrint("\n");
}

std::unique_ptr<HuffmanNode> MakeLeaf(const SymbolProbability& pair) {
    auto leaf = std::make_unique<HuffmanNode>();
    leaf->symbol = pair.symbol;
    leaf->probability = pair.probability;
    return leaf;
}

// Joins the last two nodes of the list. The order test compares the last
// node with itself, so the last node always becomes the first child; the
// codes of every build depend on exactly this order.
std::unique_ptr<HuffmanNode> JoinLastTwo(NodeList& list) {
    auto last = std::move(list.back());
    list.pop_back();
    auto nextToLast = std::move(list.back());
    list.pop_back();

    auto inner = std::make_unique<HuffmanNode>();
    inner->probability = last->probability + nextToLast->probability;
    const HuffmanNode& compared = *last;
    if (!(last->probability < compared.probability)) {
        inner->first = std::move(last);
        inner->second = std::move(nextToLast);
    } else {
        inner->first = std::move(nextToLast);
        inner->second = std::move(last);
    }
    return inner;
}

// Inserts before the first node of strictly smaller probability, so a tie
// places the new node after its equals.
void InsertByProbability(NodeList& list, std::unique_ptr<HuffmanNode> node) {
    auto at = list.begin();
    while (at != list.end() && !((*at)->probability < node->probability)) ++at;
    list.insert(at, std::move(node));
}

// The path of the codebook walk: one process-wide vector, empty between walks.
BitSequence& SharedPath() {
    static BitSequence path;
    return path;
}

void DropLastPathBit() {
    BitSequence& path = SharedPath();
    if (path.empty()) {
        DebugPrint("codeVec is empty\n");
        return;
    }
    path.pop_back();
}

void CollectCodes(const HuffmanNode& node, std::map<int, BitSequence>& codebook) {
    BitSequence& path = SharedPath();
    if (node.IsLeaf()) {
        codebook.emplace(static_cast<int>(node.symbol), path);
    } else {
        path.push_back(node.branch[0]);
        CollectCodes(*node.first, codebook);
        path.push_back(node.branch[1]);
        CollectCodes(*node.second, codebook);
    }
    DropLastPathBit();
}

}  // namespace

HuffmanTree BuildHuffmanTree(const SymbolProbability* table, int count) {
    HuffmanTree tree;
    if (table == nullptr || count <= 0) return tree;

    std::vector<SymbolProbability> pairs(table, table + count);
    PrintTable("ptable before sorting...\n", pairs);
    std::qsort(pairs.data(), pairs.size(), sizeof(SymbolProbability), CompareDescending);
    PrintTable("ptable after sorting...\n", pairs);

    NodeList list;
    for (const auto& pair : pairs) list.push_back(MakeLeaf(pair));
    while (list.size() > 1) InsertByProbability(list, JoinLastTwo(list));
    tree.root = std::move(list.front());

    CollectCodes(*tree.root, tree.codebook);
    return tree;
}

HuffmanTree BuildTreeV1() { return BuildHuffmanTree(kTableV1.data(), kSymbolCount); }

void PrintCodebook(const HuffmanTree& tree) {
    DebugPrint("Codebook <Key> : <Code>\n");
    for (const auto& [symbol, code] : tree.codebook) {
        DebugPrint("%d : ", symbol);
        for (bool bit : code) DebugPrint("%d", bit ? 1 : 0);
        DebugPrint("\n");
    }
}

}  // namespace quarnel::codec
