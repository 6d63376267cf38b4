#include "model/DXF.h"

#include "model/BlockBoxes.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

using Name = HashedString<wchar_t>;

namespace {

/// The room that the message of a layer not found has, without its end.
constexpr std::size_t MAX_NOT_FOUND_TEXT = 99;

const std::wstring LAYER_ZERO = L"0";

wchar_t Folded(wchar_t c)
{
    return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
}

bool TextLess(const std::wstring& a, const std::wstring& b)
{
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](wchar_t x, wchar_t y) { return Folded(x) < Folded(y); });
}

/// The message with the name in the place of "%s".
std::wstring NotFoundText(const std::wstring& name)
{
    static const std::wstring MARK = L"%s";
    std::wstring text = MessageText(Message::LayerNamedNotFound);
    text.replace(text.find(MARK), MARK.size(), name);
    text.resize(std::min(text.size(), MAX_NOT_FOUND_TEXT));
    return text;
}

} // namespace

bool DXF::ByName::operator()(const NamedLayer& a, const NamedLayer& b) const
{
    return a.hash != b.hash ? a.hash < b.hash : TextLess(a.layer->Name(), b.layer->Name());
}

bool DXF::ByName::operator()(const NamedLayer& a, const Name& b) const
{
    return a.hash != b.Hash() ? a.hash < b.Hash() : TextLess(a.layer->Name(), b.Text());
}

bool DXF::ByName::operator()(const Name& a, const NamedLayer& b) const
{
    return a.Hash() != b.hash ? a.Hash() < b.hash : TextLess(a.Text(), b.layer->Name());
}

DXFLayer* DXF::AddLayer(const wchar_t* name)
{
    return name ? AddLayer(std::wstring(name)) : nullptr;
}

DXFLayer* DXF::AddLayer(const std::wstring& name)
{
    if (name.empty() || !DXFLayer::IsValidName(name) || HasLayer(name)) return nullptr;
    ++m_ModifiedID;
    return AppendLayer(name);
}

DXFLayer* DXF::AppendLayer(const std::wstring& name)
{
    auto* layer = new DXFLayer(name);
    layer->m_Holders.push_back(this);
    m_Layers.push_back(layer);
    Index(*layer);
    return m_LastNamedLayer = layer;
}

ErrorString DXF::RemoveLayer(const wchar_t* name)
{
    if (!name) return ErrorString(Message::InvalidLayerNameEmpty);
    return RemoveLayer(std::wstring(name));
}

ErrorString DXF::RemoveLayer(const std::wstring& name)
{
    if (name == LAYER_ZERO) return ErrorString(Message::LayerZeroNotRemovable);
    const auto place = LayerIterator(Name(name));
    if (place == m_Layers.end()) return ErrorString(Message::LayerNotFound);
    DXFLayer* layer = *place;
    m_Layers.erase(place);
    Forget(layer);
    ++m_ModifiedID;
    return true;
}

ErrorString DXF::RemoveLayer(DXFLayer*& layer)
{
    return RemoveLayer(layer ? layer->Name().c_str() : nullptr);
}

ErrorString DXF::RemoveLayer(DXFLayer& layer)
{
    return RemoveLayer(layer.Name());
}

ErrorString DXF::SetActiveLayer(const wchar_t* name)
{
    return SetActiveLayer(std::wstring(name ? name : L""));
}

ErrorString DXF::SetActiveLayer(const std::wstring& name)
{
    m_ActiveLayer = (*this)[name];
    if (m_ActiveLayer) return true;
    return NotFoundText(name);
}

ErrorString DXF::RenameLayer(const wchar_t* oldName, const wchar_t* newName)
{
    const std::wstring from = oldName ? oldName : L"";
    const std::wstring to = newName ? newName : L"";
    if (from == LAYER_ZERO) return ErrorString(Message::LayerZeroNotRenamable);
    if (HasLayer(to))
        return ErrorString(Message::CannotRename)
               << from << Message::CannotRenameLayer << to << Message::AlreadyExists;
    const auto place = LayerIterator(Name(from));
    if (place == m_Layers.end()) return ErrorString(Message::LayerQuoted) << from << Message::DoesNotExist;
    (*place)->SetName(to);
    MoveToEnd(place);
    return true;
}

bool DXF::HasLayer(const Name& name) const
{
    return m_LayersByName.contains(name);
}

bool DXF::HasLayer(const wchar_t* name) const
{
    return name && HasLayer(Name(name));
}

bool DXF::HasLayer(const std::wstring& name) const
{
    return HasLayer(Name(name));
}

DXFLayer* DXF::operator[](const wchar_t* name)
{
    return std::as_const(*this)[name];
}

DXFLayer* DXF::operator[](const wchar_t* name) const
{
    return name ? (*this)[std::wstring(name)] : nullptr;
}

DXFLayer* DXF::operator[](const std::wstring& name)
{
    return std::as_const(*this)[name];
}

DXFLayer* DXF::operator[](const std::wstring& name) const
{
    DXFLayer* layer = Find(Name(name));
    return layer && layer->Name() == name ? layer : nullptr;
}

DXFLayer* DXF::operator[](const Name& name)
{
    return Find(name);
}

DXFLayer* DXF::operator[](const Name& name) const
{
    return Find(name);
}

int DXF::NumEntities() const
{
    size_t count = 0;
    for (const DXFLayer* layer : m_Layers) count += layer->NumEntities();
    return static_cast<int>(std::min<size_t>(count, std::numeric_limits<int>::max()));
}

DXF::Layers::iterator DXF::LayerIterator(const Name& name)
{
    return std::find(m_Layers.begin(), m_Layers.end(), Find(name));
}

DXF::Layers::const_iterator DXF::LayerIterator(const Name& name) const
{
    return std::find(m_Layers.begin(), m_Layers.end(), Find(name));
}

DXFLayer* DXF::Find(const Name& name) const
{
    const auto [first, last] = m_LayersByName.equal_range(name);
    if (first == last) return nullptr;
    if (std::next(first) == last) return first->layer;
    return *std::find_if(m_Layers.begin(), m_Layers.end(),
                         [&name](const DXFLayer* layer) { return layer->HashName() == name; });
}

void DXF::Index(DXFLayer& layer)
{
    m_LayersByName.insert({layer.HashName().Hash(), &layer});
}

void DXF::Unindex(DXFLayer& layer)
{
    const auto [first, last] = m_LayersByName.equal_range(layer.HashName());
    const auto place = std::find_if(first, last, [&layer](const NamedLayer& n) { return n.layer == &layer; });
    if (place != last) m_LayersByName.erase(place);
}

void DXF::MoveToEnd(Layers::iterator place)
{
    DXFLayer* layer = *place;
    m_Layers.erase(place);
    m_Layers.push_back(layer);
    ++m_ModifiedID;
}

void DXF::BringToFront(const std::wstring& name)
{
    const LockHold hold(m_Lock);
    if (m_Layers.empty()) return;
    const auto place = std::find_if(m_Layers.begin(), m_Layers.end() - 1,
                                    [&name](const DXFLayer* layer) { return layer->Name() == name; });
    if (place != m_Layers.end() - 1) MoveToEnd(place);
}

void DXF::MoveToBack(const std::wstring& name)
{
    const LockHold hold(m_Lock);
    if (m_Layers.empty()) return;
    const auto place = std::find_if(m_Layers.begin() + 1, m_Layers.end(),
                                    [&name](const DXFLayer* layer) { return layer->Name() == name; });
    if (place == m_Layers.end()) return;
    DXFLayer* layer = *place;
    m_Layers.erase(place);
    m_Layers.push_front(layer);
    ++m_ModifiedID;
}

void DXF::SetLayerOrder(const std::vector<std::wstring>& names)
{
    const LockHold hold(m_Lock);
    std::unordered_map<std::wstring_view, DXFLayer*> layers;
    for (DXFLayer* layer : m_Layers) layers.emplace(layer->Name(), layer);
    if (layers.size() < m_Layers.size()) {
        for (const std::wstring& name : names) BringToFront(name);
        return;
    }
    std::vector<DXFLayer*> moves;
    const DXFLayer* front = m_Layers.empty() ? nullptr : m_Layers.back();
    for (const std::wstring& name : names) {
        const auto found = layers.find(name);
        if (found == layers.end() || found->second == front) continue;
        moves.push_back(found->second);
        front = found->second;
        ++m_ModifiedID;
    }
    // Only the last move of a layer counts for its place.
    std::unordered_set<DXFLayer*> moved;
    Layers top;
    for (auto move = moves.rbegin(); move != moves.rend(); ++move)
        if (moved.insert(*move).second) top.push_front(*move);
    std::erase_if(m_Layers, [&moved](DXFLayer* layer) { return moved.contains(layer); });
    m_Layers.insert(m_Layers.end(), top.begin(), top.end());
}

std::vector<std::wstring> DXF::GetLayerOrder() const
{
    std::vector<std::wstring> names;
    names.reserve(m_Layers.size());
    for (const DXFLayer* layer : m_Layers) names.push_back(layer->Name());
    return names;
}

DXFEntity* DXF::Add(DXFEntity* entity)
{
    if (m_ActiveLayer) return m_ActiveLayer->Add(entity);
    delete entity;
    return nullptr;
}

DXFEntity* DXF::Add(const wchar_t* layerName, DXFEntity* entity, bool createLayer)
{
    return layerName ? Add(std::wstring(layerName), entity, createLayer) : nullptr;
}

DXFEntity* DXF::Add(const std::wstring& layerName, DXFEntity* entity, bool createLayer)
{
    const Name name(layerName.empty() ? LAYER_ZERO : layerName);
    if (m_LastNamedLayer && m_LastNamedLayer->HashName() == name) return m_LastNamedLayer->Add(entity);
    if (DXFLayer* layer = Find(name)) return AddTo(*layer, entity);
    if (createLayer) {
        AddLayer(name.Text());
        if (m_LastNamedLayer) return m_LastNamedLayer->Add(entity);
    }
    delete entity;
    return nullptr;
}

DXFEntity* DXF::AddTo(DXFLayer& layer, DXFEntity* entity)
{
    m_LastNamedLayer = &layer;
    return layer.Add(entity);
}

void DXF::Draw(DXFWriter& writer, const GTL::Extents2D<double>& view,
               const std::atomic<bool>& keepGoing) const
{
    for (const DXFLayer* layer : m_Layers)
        if (layer->IsVisible()) layer->Draw(writer, view, keepGoing);
}

GTL::Extents3D<double> DXF::Extents()
{
    return BlockBoxes().Compute(*this);
}

void DXF::Transform(const GTL::Transformation<GTL::Point3D<double>>& t, const std::atomic<bool>& keepGoing)
{
    for (DXFLayer* layer : m_Layers) {
        if (!keepGoing) return;
        layer->Transform(t, keepGoing);
    }
}

bool DXF::Lock() const
{
    m_Lock.Enter();
    return true;
}

void DXF::Unlock() const
{
    m_Lock.Leave();
}
