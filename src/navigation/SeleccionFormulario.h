#pragma once

#include "Controller.h"

// "Selección de Formulario": what to do with a declaration that exists, to look
// at it, change it, rectify it with or without its data, or delete it. The
// dispatcher hands it the node's string and reads back the choice and the
// patched string; deleting happens here.
class SeleccionFormulario : public Controller
{
    Q_OBJECT
public:
    SeleccionFormulario();

    QString Parametros;
    // -1 nothing chosen; 0 Modificar; 1 RectificativaSinDatos;
    // 2 RectificativaConDatos; 3 Eliminar; 4 Consultar.
    int OpcionesSeleccion = -1;

    void Consultar();
    void Modificar();
    void RectificativaSinDatos();
    void RectificativaConDatos();
    void Eliminar();

protected:
    void design() override;
    void onLoad() override;
    void onQueryUnload(bool& cancel, int mode) override;

private:
    void aceptar();
    void cancelar();
    void chooseRectificativa();
    void chooseOther();
    bool validDateField();
    bool dateOrderPasses();
    // The checks both rectifications share; false keeps the dialog open.
    bool rectificationDateAccepted();
    void patch(const QString& fechaNueva, const QString& conDatos);
    // Whether the string names the latest declaration of its form and period.
    bool isLatest();

    QString value(const char* key) const;

    int m_mes = 0;
    int m_anio = 0;
    bool m_stayOpen = false;
};
