#include "Record.h"

#include <fstream>

namespace {
constexpr std::uint32_t MARK = 0x31535248;
constexpr std::uint32_t LONGEST_NAME = 1 << 10;
constexpr std::uint32_t LARGEST_SIDE = 1 << 16;

void PutWord(std::ofstream& file, std::uint32_t word)
{
    file.write(reinterpret_cast<const char*>(&word), sizeof word);
}

std::uint32_t TakeWord(std::ifstream& file)
{
    std::uint32_t word = 0;
    file.read(reinterpret_cast<char*>(&word), sizeof word);
    return file ? word : 0;
}

bool TakeScene(std::ifstream& file, Scene& scene)
{
    const std::uint32_t length = TakeWord(file);
    if (length > LONGEST_NAME) return false;
    scene.name.resize(length);
    file.read(scene.name.data(), length);
    scene.rule = static_cast<Scene::Rule>(TakeWord(file));
    scene.isPicture = TakeWord(file) != 0;
    scene.width = TakeWord(file);
    scene.height = TakeWord(file);
    if (scene.rule > Scene::Rule::TurnedText) return false;
    if (scene.width > LARGEST_SIDE || scene.height > LARGEST_SIDE) return false;
    scene.values.resize(std::size_t{scene.width} * scene.height);
    file.read(reinterpret_cast<char*>(scene.values.data()),
              static_cast<std::streamsize>(scene.values.size() * sizeof(std::uint32_t)));
    return bool(file);
}
} // namespace

bool SceneFile::Write(const std::string& name, const std::vector<Scene>& scenes)
{
    std::ofstream file(name, std::ios::binary);
    PutWord(file, MARK);
    PutWord(file, static_cast<std::uint32_t>(scenes.size()));
    for (const Scene& scene : scenes) {
        PutWord(file, static_cast<std::uint32_t>(scene.name.size()));
        file.write(scene.name.data(), static_cast<std::streamsize>(scene.name.size()));
        for (const std::uint32_t word : {static_cast<std::uint32_t>(scene.rule),
                                         std::uint32_t{scene.isPicture}, scene.width, scene.height})
            PutWord(file, word);
        file.write(reinterpret_cast<const char*>(scene.values.data()),
                   static_cast<std::streamsize>(scene.values.size() * sizeof(std::uint32_t)));
    }
    file.flush();
    return bool(file);
}

bool SceneFile::Read(const std::string& name, std::vector<Scene>& scenes)
{
    std::ifstream file(name, std::ios::binary);
    if (TakeWord(file) != MARK) return false;
    for (std::uint32_t left = TakeWord(file); left > 0; --left) {
        scenes.emplace_back();
        if (!TakeScene(file, scenes.back())) return false;
    }
    return true;
}
