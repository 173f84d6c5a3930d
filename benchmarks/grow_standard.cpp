// grow_standard TARGET KILOBYTES: writes a pipe-system standard of about that size, UTF-8 with a declaration,
// by going on with system groups until it is reached. Every text differs a little, as in a real file.
// grow_standard TARGET SYSTEMS LAYERS: the same with that many systems and layers in each.
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

class writer {
public:
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\r\n";

    void begin(const char* name, const std::string& attributes) {
        text += std::string("<") + name + attributes + ">\r\n";
    }
    void end(const char* name) { text += std::string("</") + name + ">\r\n"; }
    void value(const char* name, const char* comment, const std::string& data) {
        text += std::string("<") + name + " Comment=\"" + comment + "\"";
        text += data.empty() ? "/>" : ">" + data + "</" + name + ">";
        text += "\r\n";
    }
};

std::string comment(const char* words) {
    return std::string(" Comment=\"") + words + "\"";
}

void add_layer(writer& out, const std::string& type, const std::string& name, int number) {
    out.begin("Layer", " LayerType=\"" + type + "\"");
    out.value("OldKey", "旧版关键字", "PIPE-" + std::to_string(number));
    out.value("LayerName", "图层名", name);
    out.value("LayerColor", "图层颜色", number % 7 == 0 ? "255,0,128" : std::to_string(number % 256));
    out.value("LineStyle", "线型",
              number % 3 == 0 ? "CONTINUOUS" : "DASH &amp; DOT" + std::to_string(number % 40));
    out.value("LineWeight", "线宽", number % 5 == 0 ? "默认" : "0.35");
    out.value("Remark", "备注", number % 4 == 0 ? "&lt;由管线系统 &quot;" + name + "&quot; 使用&gt;" : "");
    out.value("CanDel", "是否可以删除图层", "1");
    out.value("CanPlot", "是否可打印图层", "1");
    out.begin("LayerAttachSet", comment("图层归属集合"));
    out.value("LayerAttach", "图层归属", "平面图");
    out.value("LayerAttach", "图层归属", "系统图");
    out.end("LayerAttachSet");
    out.end("Layer");
}

void add_system(writer& out, int number, int layers) {
    static const char* const kinds[] = {"给水", "热水", "污水", "废水", "雨水", "消火栓", "喷淋", "中水"};
    const std::string name = kinds[number % 8] + std::to_string(number);
    out.begin("Pipe", comment("系统"));
    out.begin("BaseInfo", comment("基本信息"));
    out.value("PipeOriginalName", "原始名称", name);
    out.value("PipeName", "名称", name);
    out.value("LineWidth", "线宽", "0.5");
    out.value("Dim", "标注", "J" + std::to_string(number % 9));
    out.value("Material", "管材", "内外热镀锌钢管");
    out.value("OutdoorMaterial", "室外管材", "球墨铸铁管");
    out.value("VPipeType", "立管样式", "1");
    out.value("VPipeRaidus", "立管半径", "0.75");
    out.value("VPipeRaidus1", "立管大圆半径", "0.5");
    out.value("VPipeRaidus2", "立管小圆半径", "0.25");
    out.value("WaterFlowStatus", "水流状态", "压力流");
    out.value("Remark", "备注", "");
    out.value("CanName", "是否可以更改管线关键字", "1");
    out.value("CanDel", "是否可以删除管线", "0");
    out.value("Status", "状态标识", std::to_string(number % 4));
    out.end("BaseInfo");
    out.begin("SysMap", comment("管道系统图层映射规则"));
    out.begin("MapItem", comment("映射项"));
    out.value("SrcItem", "映射源", "扣弯");
    out.value("DesItem", "映射目标", "管线");
    out.end("MapItem");
    out.end("SysMap");
    static const char* const types[] = {"管线", "立管", "管径文字", "管线流向", "扣弯"};
    for (int i = 0; i < layers; ++i) {
        const std::string type = i < 5 ? types[i] : "类型" + std::to_string(i);
        add_layer(out, type, "PIPE-" + name + "-" + type, number);
    }
    out.end("Pipe");
}

} // namespace

int main(int argc, char** argv) {
    const long first = argc >= 3 ? std::atol(argv[2]) : 0;
    const int layers = argc == 4 ? std::atoi(argv[3]) : 5;
    const std::size_t size = argc == 3 ? static_cast<std::size_t>(first) * 1000 : 0;
    const long systems = argc == 4 ? first : 0;
    if (first <= 0 || layers <= 0 || argc > 4) {
        std::fprintf(stderr, "usage: grow_standard TARGET KILOBYTES | TARGET SYSTEMS LAYERS\n");
        return 2;
    }
    writer out;
    out.begin("Vantrel", comment("维朗管线系统配置文件"));
    out.begin("PipeSystem", comment("管线系统"));
    const auto goes_on = [&](int system) { return out.text.size() < size || system < systems; };
    for (int system = 0; goes_on(system);) {
        out.begin("PipeGroup",
                  comment("系统组") + " Name=\"系统组" + std::to_string(system / 10) + "\" CanName=\"1\"");
        for (int i = 0; i < 10 && goes_on(system); ++i)
            add_system(out, system++, layers);
        out.end("PipeGroup");
    }
    out.end("PipeSystem");
    out.end("Vantrel");
    std::FILE* const file = std::fopen(argv[1], "wb");
    const bool written =
        file != nullptr && std::fwrite(out.text.data(), 1, out.text.size(), file) == out.text.size();
    if (file == nullptr || std::fclose(file) != 0 || !written) {
        std::perror(argv[1]);
        return 1;
    }
    return 0;
}
