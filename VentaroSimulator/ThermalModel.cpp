#include "ThermalModel.h"

#include <algorithm>

namespace ventaro {

namespace {

using Node = ThermalNode;

constexpr std::size_t index(Node node) { return static_cast<std::size_t>(node); }

// Heat capacities in J/K, from mass and specific heat: dies with heat spreader and cold plate about
// 65 g of copper (0.39 J/gK), each pipe with its fins about 180 g, logic board with case bottom
// about 1 kg of aluminium (0.90 J/gK), battery about 0.6 kg (1.0 J/gK).
constexpr std::array<double, thermalNodeCount> capacities{25, 25, 70, 70, 900, 600};

struct Link {
    Node from;
    Node to;
    double conductance; // W/K
};

// Conductances in W/K. Fitted so that the whole behaves as measured machines do: 42 °C package at
// 7 W idle, about 85 °C under a long compilation with the fans at two thirds.
constexpr std::array<Link, 6> links{{
    {Node::cpuDie, Node::board, 0.25},
    {Node::gpuDie, Node::board, 0.25},
    {Node::leftHeatPipe, Node::rightHeatPipe, 0.25},
    {Node::leftHeatPipe, Node::board, 0.05},
    {Node::rightHeatPipe, Node::board, 0.05},
    {Node::board, Node::battery, 0.15},
}};
constexpr double leftFinsPerRPM = 2.3e-4;
constexpr double rightFinsPerRPM = 2.6e-4;
constexpr double finsStill = 0.02;
constexpr double boardPerRPM = 1.2e-5;
constexpr double boardStill = 0.08;
constexpr double batteryStill = 0.35;

// A heat pipe transports little until its working fluid boils at the hot end.
constexpr double pipeCold = 0.08;
constexpr double cpuPipeHot = 3.0;
constexpr double gpuPipeHot = 2.6;
constexpr double pipeStart = 40; // °C
constexpr double pipeSpan = 20;  // °C until it transports fully

// A tenth of the processors' power is lost in the voltage regulators on the board.
constexpr double regulatorLoss = 0.1;

constexpr double throttlePerSecond = 0.5;
constexpr double recoverPerSecond = 0.1;
constexpr double recoverBelow = 98; // °C
constexpr double smallestShare = 0.2;

double pipeConductance(double hotEnd, double hot) {
    return pipeCold + (hot - pipeCold) * std::clamp((hotEnd - pipeStart) / pipeSpan, 0.0, 1.0);
}

double nextShare(double share, double temperature, double seconds) {
    if (temperature >= ThermalModel::throttleTemperature) {
        return std::max(smallestShare, share - throttlePerSecond * seconds);
    }
    return temperature < recoverBelow ? std::min(1.0, share + recoverPerSecond * seconds) : share;
}

} // namespace

ThermalModel::ThermalModel() { temperatures_.fill(ambient); }

ThermalModel ThermalModel::idling() {
    // The steady state at 7 W with the fans at their minimum.
    ThermalModel model;
    model.temperatures_ = {40.1, 35.1, 28.0, 27.5, 37.4, 27.9};
    return model;
}

double ThermalModel::temperature(Node node) const { return temperatures_[index(node)]; }

double ThermalModel::energyStored() const {
    double energy = 0;
    for (std::size_t node = 0; node < thermalNodeCount; ++node) {
        energy += capacities[node] * (temperatures_[node] - ambient);
    }
    return energy;
}

void ThermalModel::step(double seconds, const PowerDraw& demand, double leftRPM, double rightRPM) {
    cpuShare_ = nextShare(cpuShare_, temperature(Node::cpuDie), seconds);
    gpuShare_ = nextShare(gpuShare_, temperature(Node::gpuDie), seconds);
    const double cpu = demand.cpu * cpuShare_;
    const double gpu = demand.gpu * gpuShare_;
    const double losses = regulatorLoss * (cpu + gpu);
    drawn_ = {cpu, gpu, demand.memory, demand.board + losses};

    std::array<double, thermalNodeCount> heat{}; // W into each node
    heat[index(Node::cpuDie)] = cpu;
    heat[index(Node::gpuDie)] = gpu;
    heat[index(Node::board)] = demand.memory + demand.board + losses;
    const auto flow = [&](Node from, Node to, double conductance) {
        const double power = conductance * (temperature(from) - temperature(to));
        heat[index(from)] -= power;
        heat[index(to)] += power;
    };
    for (const Link& link : links) {
        flow(link.from, link.to, link.conductance);
    }
    flow(Node::cpuDie, Node::leftHeatPipe, pipeConductance(temperature(Node::cpuDie), cpuPipeHot));
    flow(Node::gpuDie, Node::rightHeatPipe, pipeConductance(temperature(Node::gpuDie), gpuPipeHot));

    double lost = 0; // W into the air
    const auto toAir = [&](Node node, double conductance) {
        const double power = conductance * (temperature(node) - ambient);
        heat[index(node)] -= power;
        lost += power;
    };
    toAir(Node::leftHeatPipe, finsStill + leftFinsPerRPM * leftRPM);
    toAir(Node::rightHeatPipe, finsStill + rightFinsPerRPM * rightRPM);
    toAir(Node::board, boardStill + boardPerRPM * (leftRPM + rightRPM));
    toAir(Node::battery, batteryStill);

    for (std::size_t node = 0; node < thermalNodeCount; ++node) {
        temperatures_[node] += heat[node] * seconds / capacities[node];
    }
    energyIn_ += drawn_.total() * seconds;
    energyOut_ += lost * seconds;
}

} // namespace ventaro
