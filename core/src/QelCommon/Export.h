#pragma once

/// Marks a declaration of the public interface.  The libraries are compiled with hidden visibility, so a class,
/// function or variable that programs link to must be marked where it is declared:
///
///     struct QEL_EXPORT QelUsageStats : QelRecord<QelUsageStats> {
///     QEL_EXPORT int setTitle(const std::string& title);
///     QEL_EXPORT extern int debug_level;
///
/// On a class it exports the members that are not inline, the virtual function table and the type information, also of
/// nested classes.  A program that derives from a marked class needs no mark of its own.  In a private header, it marks
/// what another of the libraries uses.
///
/// A macro, because the language has no other way to give an attribute a name.
#define QEL_EXPORT [[gnu::visibility("default")]]
