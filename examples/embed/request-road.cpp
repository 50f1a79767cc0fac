// Follows one request through the system: a client requests more memory for a virtual machine, the agent changes the
// environment and publishes an event, and a subscriber prints the event.
//
//     request-road CACHE MESSAGE CONFIGURATION
//
// uses the first environment of the message and the agent's identity from the configuration.  Agent and subscriber
// share only the cache file and the bytes of one message, so they could be separate processes.

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include <QelCommon/ErrorMessage.h>
#include <QelFunctionalityCore/QelFunctionalityCore.h>

namespace {

constexpr const char* memoryLimit = "memory_bytes";

// --- Both sides

std::string memoryOf(const Qel::QelEnv& env) {
    Qel::QelOptionalProperty<Qel::QelQoS> limit;
    limit.get().id = memoryLimit;
    static_cast<void>(env.getVirtualConfig()->getQoS(limit));
    return limit.isSpecified() ? std::to_string(limit->hardLimit) : "unlimited";
}

std::string memoryIn(const Qel::QelEnvCache::EnvValuesListPtr& snapshot, const Qel::QelEID& eid) {
    const Qel::QelEnvCSP env = snapshot->getEnv(eid);
    return env ? memoryOf(*env) : "(not found)";
}

// --- The agent

/// The plug-in for a type of environments.  It is called before a change is written to the cache and can reject it.
class Plugin : public Qel::QelEnvUpdater {
public:
    int insertEnv(const Qel::QelEnv&) override { return 0; }
    int updateEnv(const Qel::QelEnv& env) override {
        std::cout << "plug-in: " << env.getTitle() << " changes\n";
        return 0;
    }
    int removeEnv(const Qel::QelEID&) override { return 0; }
    void syncEnvList(const Qel::QelEID&, const Qel::QelEnvIDList&) override {}
    int checkEnv(const Qel::QelEnv&) override { return 0; }
};

/// 1. The environment is read from a message.
int readEnvironment(const std::string& file, Qel::QelEnv& env) {
    const Qel::auto_destroy<Qel::QelMessage> message(Qel::QelMessage::getFactory()->createNew());
    if (message->create(0) != 0 || message->loadFromFile(file) != 0)
        return -1;
    const std::unique_ptr<Qel::QelMessageIterator> cursor(message->rootIterator());
    return cursor->firstChild() == 0 ? cursor->getObj(env, Qel::getEmptyID()) : -1;
}

/// 2. Setting a field changes the configuration's tree.
int doubleMemory(Qel::QelEnv& env) {
    Qel::QelOptionalProperty<Qel::QelQoS> limit;
    limit.get().id = memoryLimit;
    if (env.getVirtualConfig()->getQoS(limit) != 0 || !limit.isSpecified())
        return -1;
    limit->hardLimit *= 2;
    return env.getVirtualConfig()->setQoS(limit);
}

/// 4. An event describes the change; its payload reports that the memory shortage is over.
boost::shared_ptr<Qel::QelEvent> makeEvent(const Qel::QelEnv& env, const std::string& before) {
    const boost::shared_ptr<Qel::QelEvent> event(new Qel::QelEvent("request-road"));
    event->category = "environment";
    event->info = Qel::QelInfo("%env% has %now% bytes of memory now, and had %before%.", "", true);
    event->info.setParameter(Qel::QelEnvInfo(env));
    event->info.setParameter(Qel::QelInfo(memoryOf(env), "now", false));
    event->info.setParameter(Qel::QelInfo(before, "before", false));

    const boost::shared_ptr<Qel::QelResourceAlertData> alert(new Qel::QelResourceAlertData);
    alert->eid = env.getEID();
    alert->type = Qel::QelAlertType::green;
    alert->subsystem = "memory";
    alert->id = memoryLimit;
    alert->current.integer = 16'000'000'000;
    alert->hard.integer = std::stoll(memoryOf(env));
    event->data = alert;
    return event;
}

/// 5. The event is written to a message, with the subscription names that select its subscribers.
int publish(const boost::shared_ptr<Qel::QelEvent>& event, std::string& bytes) {
    const Qel::auto_destroy<Qel::QelMessage> message(Qel::QelMessage::getFactory()->createNew());
    if (message->create(0) != 0)
        return -1;
    const std::unique_ptr<Qel::QelMessageIterator> cursor(message->rootIterator());
    cursor->newChild("event");
    if (cursor->putObject(event, Qel::QelWriterDerived<Qel::QelEvent>(), Qel::getEmptyID()) != 0 ||
        Qel::QelEventData::addSubscription(*event, *message) != 0 || event->data->addSubscriptionName(*message) != 0)
        return -1;
    return message->toBinary(bytes);
}

int serveRequest(const std::string& file, std::string& bytes) {
    const Qel::QelEnvCacheSP cache = Qel::envCache();
    Qel::QelEnv env;
    if (!cache || readEnvironment(file, env) != 0 || (cache->insert(env) != 0 && cache->update(env) != 0))
        return -1;
    Qel::QelEnvFactory::getInstance().setEnvUpdater(env.getType(), boost::shared_ptr<Qel::QelEnvUpdater>(new Plugin));
    const Qel::QelEnvCache::EnvValuesListPtr held = cache->getEnvList();
    const std::string before = memoryOf(env);
    std::cout << "agent: " << env.getTitle() << " of type " << env.getType().c_str() << ", memory " << before << '\n';

    // 3. The update serialises the configurations into the flat record, calls the plug-in and replaces the record.
    if (doubleMemory(env) != 0 || cache->update(env) != 0)
        return -1;
    const Qel::QelEnvCache::EnvValuesListPtr fresh = cache->getEnvList();
    if (!held || !fresh)
        return -1;
    std::cout << "held snapshot: memory " << memoryIn(held, env.getEID()) << '\n'
              << "new snapshot: memory " << memoryIn(fresh, env.getEID()) << '\n';
    return publish(makeEvent(env, before), bytes);
}

// --- The subscriber

/// 6. The subscriber reads the event and formats its texts.
int receive(const std::string& bytes) {
    const Qel::auto_destroy<Qel::QelMessage> message(Qel::QelMessage::getFactory()->createNew());
    if (message->create(0) != 0 || message->fromBinary(bytes.data(), static_cast<int>(bytes.size())) != 0)
        return -1;
    for (const std::string& name : message->getSubscriptions())
        std::cout << "subscription: " << name << '\n';

    const std::unique_ptr<Qel::QelMessageIterator> cursor(message->rootIterator());
    boost::shared_ptr<Qel::QelEvent> event;
    if (cursor->seek("event") != 0 ||
        cursor->getObject(event, Qel::QelReaderDerived<Qel::QelEvent>(true), Qel::getEmptyID()) != 0)
        return -1;
    std::cout << "subscriber: an event of " << event->source << " at agent " << event->eid.toString() << '\n'
              << "subscriber: " << event->info.toString() << '\n';
    if (event->data) {
        Qel::QelInfo text;
        event->data->toInfo(text);
        std::cout << "subscriber: " << text.toString() << '\n';
    }
    std::cout << "subscriber: the event concerns " << event->info.getParameterByPath("/env/type") << " "
              << event->info.getParameterByPath("/env/eid") << '\n';
    return 0;
}

int setIdentity(const std::string& file) {
    Qel::QelConfiguration configuration;
    if (configuration.readFromFile(file) != 0)
        return -1;
    return Qel::QelConfiguration::setLocalConfig(configuration.getMessage());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: request-road CACHE MESSAGE CONFIGURATION\n");
        return 2;
    }
    Qel::initEnvCache(argv[1], false);
    std::string bytes;
    if (setIdentity(argv[3]) != 0 || serveRequest(argv[2], bytes) != 0 || receive(bytes) != 0) {
        std::fprintf(stderr, "request-road: %s\n", Qel::getErrorMessage().c_str());
        return 4;
    }
    return 0;
}
