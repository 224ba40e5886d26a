#include "SensorCatalog.h"

#include <array>

namespace ventaro {

namespace {

constexpr const char* celsius = "°C";
constexpr const char* watt = "W";

constexpr std::array<CatalogSensor, 41> catalog{{
    {"TCXC", "CPU PECI Package (Max)", SensorCategory::cpu, celsius},
    {"TC0F", "CPU Die (Filter)", SensorCategory::cpu, celsius},
    {"TC0E", "CPU Die (Virtual)", SensorCategory::cpu, celsius},
    {"TC0P", "CPU Proximity", SensorCategory::cpu, celsius},
    {"TCSA", "CPU System Agent", SensorCategory::cpu, celsius},
    {"TCGC", "Intel UHD Graphics 630", SensorCategory::cpu, celsius},
    {"TC1C", "CPU Core 1", SensorCategory::cpu, celsius},
    {"TC2C", "CPU Core 2", SensorCategory::cpu, celsius},
    {"TC3C", "CPU Core 3", SensorCategory::cpu, celsius},
    {"TC4C", "CPU Core 4", SensorCategory::cpu, celsius},
    {"TC5C", "CPU Core 5", SensorCategory::cpu, celsius},
    {"TC6C", "CPU Core 6", SensorCategory::cpu, celsius},
    {"TC7C", "CPU Core 7", SensorCategory::cpu, celsius},
    {"TC8C", "CPU Core 8", SensorCategory::cpu, celsius},
    {"TGDD", "AMD Radeon Pro GPU Die", SensorCategory::gpu, celsius},
    {"TG0P", "GPU Proximity 1", SensorCategory::gpu, celsius},
    {"TG1P", "GPU Proximity 2", SensorCategory::gpu, celsius},
    {"TGVF", "GPU VRAM / VRM", SensorCategory::gpu, celsius},
    {"Th1H", "Heatpipe Links (CPU-Seite)", SensorCategory::heatsink, celsius},
    {"Th2H", "Heatpipe Rechts (GPU-Seite)", SensorCategory::heatsink, celsius},
    {"TaLC", "Luftstrom Links", SensorCategory::heatsink, celsius},
    {"TaRC", "Luftstrom Rechts", SensorCategory::heatsink, celsius},
    {"Ts0P", "Handballenauflage Links", SensorCategory::heatsink, celsius},
    {"Ts1P", "Handballenauflage Rechts", SensorCategory::heatsink, celsius},
    {"Tm0P", "Logic Board Proximity", SensorCategory::storageAndBoard, celsius},
    {"TM0P", "DDR4 RAM Proximity", SensorCategory::storageAndBoard, celsius},
    {"TPCD", "Intel PCH (Chipsatz)", SensorCategory::storageAndBoard, celsius},
    {"TW0P", "Wi-Fi / Airport Modul", SensorCategory::storageAndBoard, celsius},
    {"TH0a", "Apple SSD NAND A", SensorCategory::storageAndBoard, celsius},
    {"TH0b", "Apple SSD NAND B", SensorCategory::storageAndBoard, celsius},
    {"TTLD", "Thunderbolt Links", SensorCategory::storageAndBoard, celsius},
    {"TTRD", "Thunderbolt Rechts", SensorCategory::storageAndBoard, celsius},
    {"TB0T", "Akku Hauptsensor", SensorCategory::battery, celsius},
    {"TB1T", "Akku Zelle 1", SensorCategory::battery, celsius},
    {"TB2T", "Akku Zelle 2", SensorCategory::battery, celsius},
    {"PDTR", "Gesamtsystem (DC-In)", SensorCategory::power, watt},
    {"PSTR", "System Total Power", SensorCategory::power, watt},
    {"PC0R", "CPU Package Power", SensorCategory::power, watt},
    {"PG0R", "Diskrete GPU Power", SensorCategory::power, watt},
    {"PM0C", "RAM Power", SensorCategory::power, watt},
    {"PPBR", "Akku Lade-/Entladeleistung", SensorCategory::power, watt},
}};

} // namespace

std::span<const CatalogSensor> sensorCatalog() { return catalog; }

bool isPlausible(std::string_view unit, double value) {
    return unit == celsius ? isPlausibleTemperature(value) : isPlausiblePower(value);
}

} // namespace ventaro
