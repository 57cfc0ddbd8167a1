# The look of the program, its dialogs and what else needs Qt's widgets.

# Images and the marks of the style sheet are rendered from their drawings when the library is built.
add_executable(brindle-render-images resources/render-images.cpp ThemeColors.cpp)
target_link_libraries(brindle-render-images PRIVATE Brindle Qt5::Gui Qt5::Svg)

set(images ${CMAKE_CURRENT_BINARY_DIR}/images)
configure_file(resources/BrindleImages.qrc ${images}/BrindleImages.qrc COPYONLY)
file(GLOB drawings CONFIGURE_DEPENDS resources/images/*.svg resources/controls/*.svg)
add_custom_command(
    OUTPUT ${images}/BrindleImages.cpp
    COMMAND brindle-render-images ${CMAKE_CURRENT_SOURCE_DIR}/resources ${images}
    COMMAND Qt5::rcc --name BrindleImages --output ${images}/BrindleImages.cpp ${images}/BrindleImages.qrc
    DEPENDS brindle-render-images ${drawings} ${images}/BrindleImages.qrc
    COMMENT "Rendering the images of the themes"
    VERBATIM)
set_source_files_properties(${images}/BrindleImages.cpp PROPERTIES SKIP_AUTOMOC ON)

add_library(BrindleWidgets STATIC
    CapFrame.cpp CapFrame.h
    DirectoryDialog.cpp DirectoryDialog.h
    FileDialog.cpp FileDialog.h
    FileIconProvider.cpp FileIconProvider.h
    LineIconEngine.cpp LineIconEngine.h
    OpenFileDialog.cpp OpenFileDialog.h
    PathDialog.cpp PathDialog.h
    PathParts.cpp PathParts.h
    PopupDelegate.cpp PopupDelegate.h
    QtLabel.cpp QtLabel.h
    SaveFileDialog.cpp SaveFileDialog.h
    TableDelegate.cpp TableDelegate.h
    Theme.cpp Theme.h
    ThemeColors.cpp ThemeColors.h
    ThemeResources.cpp ThemeResources.h
    WheelGuard.cpp WheelGuard.h
    resources/Brindle.qrc ${images}/BrindleImages.cpp)
target_link_libraries(BrindleWidgets PUBLIC Brindle Qt5::Widgets PRIVATE Qt5::Svg)
