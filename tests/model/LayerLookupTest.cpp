#include "model/DXF.h"
#include "model/DXFPoint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

namespace {

std::wstring Upper(std::wstring text)
{
    for (wchar_t& c : text)
        if (c >= L'a' && c <= L'z') c = wchar_t(c - 32);
    return text;
}

/// The rules of a document over plain lists, every search from the first layer on.
struct Model {
    struct Layer {
        std::wstring name;
        int entities = 0;
    };
    using Ref = std::shared_ptr<Layer>;
    std::vector<Ref> layers{std::make_shared<Layer>(Layer{L"0"})};
    Ref active = layers[0];
    Ref lastNamed = layers[0];
    unsigned int changes = 0;

    Ref Find(const std::wstring& name) const
    {
        for (const Ref& layer : layers)
            if (Upper(layer->name) == Upper(name)) return layer;
        return nullptr;
    }
    bool AddLayer(const std::wstring& name)
    {
        if (name.empty() || name.find(L';') != name.npos || Find(name)) return false;
        layers.push_back(lastNamed = std::make_shared<Layer>(Layer{name}));
        ++changes;
        return true;
    }
    bool RemoveLayer(const std::wstring& name)
    {
        const Ref layer = Find(name);
        if (name == L"0" || !layer) return false;
        layers.erase(std::find(layers.begin(), layers.end(), layer));
        if (active == layer) active = nullptr;
        if (lastNamed == layer) lastNamed = nullptr;
        ++changes;
        return true;
    }
    bool RenameLayer(const std::wstring& from, const std::wstring& to)
    {
        const Ref layer = Find(from);
        if (from == L"0" || Find(to) || !layer) return false;
        layer->name = to;
        layers.erase(std::find(layers.begin(), layers.end(), layer));
        layers.push_back(layer);
        ++changes;
        return true;
    }
    void BringToFront(const std::wstring& name)
    {
        for (size_t i = 0; i + 1 < layers.size(); ++i)
            if (layers[i]->name == name) {
                std::rotate(layers.begin() + long(i), layers.begin() + long(i) + 1, layers.end());
                ++changes;
                return;
            }
    }
    void MoveToBack(const std::wstring& name)
    {
        for (size_t i = 1; i < layers.size(); ++i)
            if (layers[i]->name == name) {
                std::rotate(layers.begin(), layers.begin() + long(i), layers.begin() + long(i) + 1);
                ++changes;
                return;
            }
    }
    bool Add(const std::wstring& given, bool create)
    {
        const std::wstring name = given.empty() ? L"0" : given;
        if (!lastNamed || Upper(lastNamed->name) != Upper(name)) {
            if (Find(name))
                lastNamed = Find(name);
            else if (!create)
                return false;
            else
                AddLayer(name);
        }
        if (!lastNamed) return false;
        ++lastNamed->entities;
        return true;
    }
};

class Walk {
public:
    explicit Walk(unsigned int seed) : m_Random(seed)
    {
        for (const DXF& document : m_Documents) m_FirstIds.push_back(document.ModifiedID());
    }

    void Step()
    {
        const size_t d = Below(3);
        DXF& document = m_Documents[d];
        Model& model = m_Models[d];
        const std::wstring name = AnyName();
        const std::wstring other = AnyName();
        switch (Below(12)) {
        case 0:
        case 1:
            EXPECT_EQ(document.AddLayer(name) != nullptr, model.AddLayer(name));
            break;
        case 2:
            EXPECT_EQ(!!document.RemoveLayer(name), model.RemoveLayer(name));
            break;
        case 3:
        case 4:
            EXPECT_EQ(!!document.RenameLayer(name.c_str(), other.c_str()), model.RenameLayer(name, other));
            break;
        case 5:
            document.BringToFront(name), model.BringToFront(name);
            break;
        case 6:
            document.MoveToBack(name), model.MoveToBack(name);
            break;
        case 7:
            Reorder(document, model);
            break;
        case 8: {
            const bool create = Below(2) == 0;
            EXPECT_EQ(document.Add(name, new DXFPoint, create) != nullptr, model.Add(name, create));
            break;
        }
        case 9: {
            const Model::Ref found = model.Find(name);
            model.active = found && found->name == name ? found : nullptr;
            EXPECT_EQ(!!document.SetActiveLayer(name), model.active != nullptr);
            break;
        }
        case 10: {
            if (model.active) ++model.active->entities;
            EXPECT_EQ(document.Add(new DXFPoint) != nullptr, model.active != nullptr);
            break;
        }
        case 11:
            Share(d, Below(3));
            break;
        }
    }

    void Compare() const
    {
        for (size_t d = 0; d < 3; ++d) {
            const DXF& document = m_Documents[d];
            const Model& model = m_Models[d];
            ASSERT_EQ(document.NumLayers(), model.layers.size());
            for (size_t i = 0; i < model.layers.size(); ++i) {
                ASSERT_EQ(document[i]->Name(), model.layers[i]->name);
                ASSERT_EQ(document[i]->NumEntities(), size_t(model.layers[i]->entities));
            }
            for (const std::wstring& name : Pool()) CompareFound(document, model, name);
            ASSERT_EQ(document.ModifiedID() - m_FirstIds[d], model.changes);
        }
    }

private:
    static const std::vector<std::wstring>& Pool()
    {
        static const std::vector<std::wstring> POOL = {L"0",  L"a",  L"A", L"b", L"B",
                                                       L"ab", L"Ab", L"c", L";", L""};
        return POOL;
    }
    size_t Below(size_t count) { return m_Random() % count; }
    std::wstring AnyName() { return Pool()[Below(Pool().size())]; }

    static void CompareFound(const DXF& document, const Model& model, const std::wstring& name)
    {
        const Model::Ref found = model.Find(name);
        const auto place = std::find(model.layers.begin(), model.layers.end(), found);
        const DXFLayer* should = found ? document[size_t(place - model.layers.begin())] : nullptr;
        ASSERT_EQ(document.HasLayer(name), found != nullptr);
        ASSERT_EQ(document[HashedString<wchar_t>(name)], should);
        ASSERT_EQ(document[name], found && found->name == name ? should : nullptr);
    }

    void Reorder(DXF& document, Model& model)
    {
        std::vector<std::wstring> names(Below(6));
        for (std::wstring& name : names) name = AnyName();
        document.SetLayerOrder(names);
        for (const std::wstring& name : names) model.BringToFront(name);
    }

    /// One document becomes a copy of another, so that renaming in one shows in the other; or a layer is
    /// assigned, so that two layers of a document may have one name.
    void Share(size_t to, size_t from)
    {
        if (Below(2) == 0) {
            m_Documents[to] = m_Documents[from];
            m_Models[to] = m_Models[from];
            m_FirstIds[to] = m_FirstIds[from];
            return;
        }
        if (m_Models[to].layers.empty() || m_Models[from].layers.empty()) return;
        const size_t target = Below(m_Models[to].layers.size());
        const size_t source = Below(m_Models[from].layers.size());
        *m_Documents[to][target] = *m_Documents[from][source];
        *m_Models[to].layers[target] = Model::Layer(*m_Models[from].layers[source]);
    }

    std::mt19937 m_Random;
    DXF m_Documents[3];
    Model m_Models[3];
    std::vector<unsigned int> m_FirstIds;
};

TEST(LayerLookup, AgreesWithALinearSearchWhateverHappens)
{
    for (unsigned int seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        Walk walk(seed);
        for (int step = 0; step < 150 && !testing::Test::HasFailure(); ++step) {
            walk.Step();
            walk.Compare();
        }
    }
}

TEST(LayerLookup, FindsManyLayers)
{
    constexpr int COUNT = 30'000;
    DXF document;
    for (int i = 0; i < COUNT; ++i) document.AddLayer(L"Layer" + std::to_wstring(i));
    for (int i = 0; i < COUNT; ++i) document.Add(L"LAYER" + std::to_wstring(i), new DXFPoint, false);
    std::vector<std::wstring> order = document.GetLayerOrder();
    std::reverse(order.begin(), order.end());
    document.SetLayerOrder(order);
    EXPECT_EQ(document.GetLayerOrder(), order);
    for (int i = COUNT - 1; i >= 0; --i)
        EXPECT_FALSE(!document.RenameLayer(document[0ULL]->Name().c_str(), std::to_wstring(-i - 1).c_str()));
    EXPECT_EQ(document.NumEntities(), COUNT);
}

} // namespace
