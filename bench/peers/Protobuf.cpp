// SPDX-License-Identifier: MIT
//
// Peer: protobuf, generated from tuner.proto while building.
#include "Operations.h"

#include "tuner.pb.h"

namespace Bench {
namespace {

namespace proto = bench::proto;

void setRange(proto::ValueNumericFloat &value, const PlainRange<double> &range)
{
    value.set_value(float(range.value));
    value.set_min(float(range.min));
    value.set_max(float(range.max));
    value.set_step(float(range.step));
}

void setRange(proto::ValueNumericInt &value, const PlainRange<qint64> &range)
{
    value.set_value(qint32(range.value));
    value.set_min(qint32(range.min));
    value.set_max(qint32(range.max));
    value.set_step(qint32(range.step));
}

void setRange(proto::ValueNumericInt64 &value, const PlainRange<qint64> &range)
{
    value.set_value(range.value);
    value.set_min(range.min);
    value.set_max(range.max);
    value.set_step(range.step);
}

void convert(const PlainValue &value, proto::ValueItem &item)
{
    const std::string id = value.id.toStdString();
    switch (value.kind) {
    case Kind::Boolean:
        item.mutable_value_boolean()->set_id(id);
        item.mutable_value_boolean()->set_value(value.boolean);
        break;
    case Kind::Float:
        item.mutable_value_float()->set_id(id);
        item.mutable_value_float()->set_value(float(value.real.value));
        break;
    case Kind::Int:
        item.mutable_value_int()->set_id(id);
        item.mutable_value_int()->set_value(qint32(value.whole.value));
        break;
    case Kind::Int64:
        item.mutable_value_int64()->set_id(id);
        item.mutable_value_int64()->set_value(value.whole.value);
        break;
    case Kind::NumericFloat:
        item.mutable_value_numeric_float()->set_id(id);
        setRange(*item.mutable_value_numeric_float(), value.real);
        break;
    case Kind::NumericInt:
        item.mutable_value_numeric_int()->set_id(id);
        setRange(*item.mutable_value_numeric_int(), value.whole);
        break;
    case Kind::NumericInt64:
        item.mutable_value_numeric_int64()->set_id(id);
        setRange(*item.mutable_value_numeric_int64(), value.whole);
        break;
    case Kind::Selection: {
        proto::ValueSelection &selection = *item.mutable_value_selection();
        selection.set_id(id);
        selection.set_value(value.real.value);
        selection.set_text(value.text.toStdString());
        selection.set_index(value.index);
        for (const PlainItem &option : value.items) {
            proto::SelectionItem &added = *selection.add_items();
            added.set_name(option.text.toStdString());
            added.set_value(option.number);
        }
        break;
    }
    case Kind::String:
        item.mutable_value_string()->set_id(id);
        item.mutable_value_string()->set_value(value.text.toStdString());
        break;
    case Kind::StringList:
        item.mutable_value_string_list()->set_id(id);
        item.mutable_value_string_list()->set_value(value.text.toStdString());
        for (const PlainItem &string : value.items)
            item.mutable_value_string_list()->add_items(string.text.toStdString());
    }
}

void convert(const PlainComponent &component, proto::Component &message)
{
    message.set_type(component.type.toStdString());
    message.set_name(component.name.toStdString());
    if (!component.displayName.isNull())
        message.set_display_name(component.displayName.toStdString());
    message.set_is_optional(component.optional);
    for (const PlainNode &node : component.nodes) {
        proto::Node &added = *message.add_nodes();
        added.set_id(node.id.toStdString());
        for (const PlainValue &value : node.values)
            convert(value, *added.add_values());
    }
}

proto::TunerProperties messageOf(const PlainDocument &document)
{
    proto::TunerProperties message;
    message.set_version(document.version.toStdString());
    if (!document.name.isNull())
        message.set_name(document.name.toStdString());
    message.set_type(document.type);
    message.set_baseresource(document.baseresource.toStdString());
    if (!document.connectableResources.isNull())
        message.set_connectable_resources(document.connectableResources.toStdString());
    if (document.quantity)
        message.set_quantity(*document.quantity);
    if (!document.parentBaseResource.isNull())
        message.set_parent_base_resource(document.parentBaseResource.toStdString());
    if (document.hwProcessing)
        message.set_hw_processing(*document.hwProcessing);
    for (const qint8 mode : document.startupModes)
        message.add_startup_modes(mode);
    for (const PlainBandwidth &bandwidth : document.bandwidths) {
        proto::BandwidthSelection &added = *message.add_bandwidths();
        added.set_name(bandwidth.name.toStdString());
        added.set_max_bandwidth(bandwidth.max);
    }
    if (document.maxFFPDelay)
        message.set_max_ffp_delay(*document.maxFFPDelay);
    if (document.hrpanSupported)
        message.set_hrpan_supported(*document.hrpanSupported);
    for (const PlainComponent &component : document.components)
        convert(component, *message.add_components());
    return message;
}

std::string idOf(const proto::ValueItem &item)
{
    switch (item.choice_case()) {
    case proto::ValueItem::kValueBoolean:
        return item.value_boolean().id();
    case proto::ValueItem::kValueFloat:
        return item.value_float().id();
    case proto::ValueItem::kValueInt:
        return item.value_int().id();
    case proto::ValueItem::kValueInt64:
        return item.value_int64().id();
    case proto::ValueItem::kValueNumericFloat:
        return item.value_numeric_float().id();
    case proto::ValueItem::kValueNumericInt:
        return item.value_numeric_int().id();
    case proto::ValueItem::kValueNumericInt64:
        return item.value_numeric_int64().id();
    case proto::ValueItem::kValueSelection:
        return item.value_selection().id();
    case proto::ValueItem::kValueString:
        return item.value_string().id();
    case proto::ValueItem::kValueStringList:
        return item.value_string_list().id();
    case proto::ValueItem::CHOICE_NOT_SET:
        break;
    }
    return {};
}

Summary summaryOf(const proto::TunerProperties &message)
{
    Summary summary;
    const auto add = [&](const std::string &id) { summary.add(id.data(), id.size()); };
    for (const proto::Component &component : message.components()) {
        for (const proto::Node &node : component.nodes()) {
            ++summary.nodes;
            add(node.id());
            for (const proto::ValueItem &item : node.values()) {
                ++summary.values;
                add(idOf(item));
            }
        }
    }
    return summary;
}

const std::string &bytesOf(const Sample &sample)
{
    if (sample.message.empty())
        sample.message = messageOf(sample.plain).SerializeAsString();
    return sample.message;
}

Operation messageWriter()
{
    Operation operation;
    operation.name = "protobuf write";
    operation.prepare = [](Sample &sample) {
        const auto message = std::make_shared<proto::TunerProperties>(messageOf(sample.plain));
        return Run{[message] {
            std::string bytes;
            message->SerializeToString(&bytes);
        }};
    };
    operation.verify = [](Sample &sample) {
        std::string bytes;
        const bool isWritten = messageOf(sample.plain).SerializeToString(&bytes);
        return isWritten && bytes == bytesOf(sample) ? QString() : QStringLiteral("other bytes are written");
    };
    return operation;
}

} // namespace

void addProtobuf(std::vector<Operation> &operations)
{
    operations.push_back(reader<proto::TunerProperties>(
        "protobuf read", "",
        [](const Sample &sample, proto::TunerProperties &message) { message.ParseFromString(bytesOf(sample)); },
        [](const Sample &sample, const proto::TunerProperties &message) {
            return difference(sample, summaryOf(message));
        }));
    operations.push_back(messageWriter());
}

} // namespace Bench
